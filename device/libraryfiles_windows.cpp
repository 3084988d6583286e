#include "device/libraryfiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <qt_windows.h>

#include <array>

namespace {

constexpr std::size_t longestPath = 32768; ///< with the end of the text
using Path = std::array<wchar_t, longestPath>;

QString systemFolder()
{
    Path path{};
    const UINT length = GetSystemDirectoryW(path.data(), static_cast<UINT>(path.size()));
    return QDir::fromNativeSeparators(QString::fromWCharArray(path.data(), static_cast<qsizetype>(length)));
}

bool isBareName(const QString &name)
{
    return !name.contains(QLatin1Char('/')) && !name.contains(QLatin1Char('\\')) &&
           !name.contains(QLatin1Char(':'));
}

/// The system puts the ending behind a name that has none; so does this.
QString existing(const QString &path)
{
    for (const QString &file : {path, path + QStringLiteral(".dll")}) {
        if (QFileInfo(file).isFile())
            return QFileInfo(file).absoluteFilePath();
    }
    return {};
}

} // namespace

namespace LibraryFiles {

QString providerName(const QString &provider)
{
    return provider + QStringLiteral(".dll");
}

QString makersName()
{
    return QStringLiteral("FTD2XX.dll");
}

QString toLoad(const QString &name)
{
    if (!isBareName(name))
        return existing(QDir::fromNativeSeparators(name));
    for (const QString &folder : searchedFolders()) {
        if (const QString file = existing(folder + QLatin1Char('/') + name); !file.isEmpty())
            return file;
    }
    return {};
}

QStringList searchedFolders()
{
    return {QCoreApplication::applicationDirPath(), systemFolder(), QDir::currentPath()};
}

QString fileOf(const void *code)
{
    HMODULE module = nullptr;
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                                GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                            static_cast<LPCWSTR>(code), &module))
        return {};
    Path path{};
    const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    return QFileInfo(QString::fromWCharArray(path.data(), static_cast<qsizetype>(length)))
        .canonicalFilePath();
}

} // namespace LibraryFiles
