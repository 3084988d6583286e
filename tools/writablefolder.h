#pragma once

#include <QString>

/// Where files are to be written, before anything is asked of a detector.
namespace WritableFolder {

/// Makes the folder if it is missing and tries it out; says what is wrong with it.
[[nodiscard]] QString check(const QString &folder);

} // namespace WritableFolder
