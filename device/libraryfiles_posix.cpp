#include "device/libraryfiles.h"

#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>

namespace {

QString fileName(const QString &library)
{
#ifdef Q_OS_MACOS
    return QStringLiteral("lib") + library + QStringLiteral(".dylib");
#else
    return QStringLiteral("lib") + library + QStringLiteral(".so");
#endif
}

} // namespace

namespace LibraryFiles {

QString providerName(const QString &provider)
{
    return fileName(provider);
}

QString makersName()
{
    return fileName(QStringLiteral("ftd2xx"));
}

QString toLoad(const QString &name)
{
    return name;
}

QStringList searchedFolders()
{
    return {};
}

QString fileOf(const void *code)
{
    Dl_info info{};
    if (dladdr(code, &info) == 0)
        return {};
    return QFileInfo(QFile::decodeName(info.dli_fname)).canonicalFilePath();
}

} // namespace LibraryFiles
