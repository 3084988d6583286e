#pragma once

#include <QString>
#include <QStringList>

/// Where driver libraries lie, on each system. Free functions, any thread; they look at the disk at most.
namespace LibraryFiles {

/// The file name of one of the program's own providers: "d2xx_virtual" is d2xx_virtual.dll on Windows.
[[nodiscard]] QString providerName(const QString &provider);

/// The name under which the maker installs his library.
[[nodiscard]] QString makersName();

/// What the system is given to load for a library that is no provider: `name` is makersName() or what the
/// settings name.
///
/// On Windows always an absolute path, empty when there is no such file: the system's own search would look
/// in folders that others can write. A bare name is looked for in searchedFolders(), a path is one from the
/// working folder. Elsewhere the name as it is: the linker's search is part of how the system is set up.
[[nodiscard]] QString toLoad(const QString &name);

/// Where toLoad() looks for a bare name, in this order: the program's folder, the system's, the working one.
/// Empty where the system searches by itself.
[[nodiscard]] QStringList searchedFolders();

/// The file that the code at an address was loaded from, links followed, which a name alone does not tell;
/// empty where the system does not know.
[[nodiscard]] QString fileOf(const void *code);

} // namespace LibraryFiles
