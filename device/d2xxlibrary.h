#pragma once

#include "device/d2xx.h"

#include <QString>

#include <memory>

/// A driver library that was looked for: the calls, and what to tell the operator about them.
struct D2xxLibrary
{
    std::shared_ptr<D2xx> driver; ///< never null; not usable when no library could be loaded
    QString path;                 ///< file that was really loaded, links followed; empty when none
    QString problem;              ///< why none could be loaded, in plain words; empty when one was
    bool isVirtual = false;       ///< it says itself that it simulates: not measured data

    /// Loads what the key `D2xxLibrary` of config.ini names.
    ///
    /// Empty: the maker's library (FTD2XX.dll, libftd2xx.so), on Linux `d2xx_ftdi` when that is not
    /// installed. "ftdi" and "virtual": `d2xx_ftdi` and `d2xx_virtual`, looked for beside the executable, in
    /// ../lib of it and where they are installed beside it. Anything else is a path. On Windows every
    /// file is loaded by its absolute path: LibraryFiles::toLoad(). The library stays loaded until the
    /// process ends. The virtual detector is loaded only when it is asked for by name.
    [[nodiscard]] static D2xxLibrary load(const QString &setting);

    /// What the System page says: which library is in use and where it lies, or why there is none.
    [[nodiscard]] QString description() const;

    /// Where data from it comes from, as the log and the log's line of a recording say it: the file and
    /// whether it simulates, or why there is none.
    [[nodiscard]] QString provenance() const;
};
