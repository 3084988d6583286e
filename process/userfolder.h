#pragma once

#include <QString>

/// The folder of the user's in which a program that was started from a menu works: settings, log and
/// recordings lie there, while the program itself may lie where nothing can be written. The virtual detector
/// has a folder of its own, so that trying it leaves the settings of the real one alone.
namespace UserFolder {

/// Below the user's documents on Windows, in his home elsewhere. Empty when he has none.
[[nodiscard]] QString path(bool virtualDetector);

/// Makes the folder, and for the virtual detector the settings that choose it, where they are not there yet;
/// what is there is left alone. Returns why that could not be done, empty when it is done.
[[nodiscard]] QString prepare(const QString &folder, bool virtualDetector);

} // namespace UserFolder
