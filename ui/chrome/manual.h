#pragma once

#include <QString>
#include <QStringList>

/// The manual that lies beside the program as HTML pages (docs/CMakeLists.txt makes them). GUI thread.
namespace Manual {

/// Where it may lie: as it is packed for Windows, as it is built and installed.
[[nodiscard]] QStringList folders();

/// Has the system open the first that there is in one of the folders. Does not block. Returns why it could
/// not be opened, in words for the operator; empty when it was.
[[nodiscard]] QString open(const QStringList &folders);

} // namespace Manual
