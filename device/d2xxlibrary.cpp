#include "device/d2xxlibrary.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLibrary>
#include <QStringList>

#include <type_traits>

#ifdef Q_OS_WIN
#include <qt_windows.h>

#include <array>
#else
#include <dlfcn.h>
#endif

namespace {

const QString virtualDetector = QStringLiteral("d2xx_virtual");
const QString openDriver = QStringLiteral("d2xx_ftdi");

/// Folders in which the project's own providers are looked for.
QStringList providerFolders()
{
    const QString beside = QCoreApplication::applicationDirPath();
    return {beside, QDir::cleanPath(beside + QStringLiteral("/../lib")), QStringLiteral(QV1K_INSTALL_LIBDIR)};
}

QString providerFileName(const QString &name)
{
#ifdef Q_OS_WIN
    return name + QStringLiteral(".dll");
#elif defined(Q_OS_MACOS)
    return QStringLiteral("lib") + name + QStringLiteral(".dylib");
#else
    return QStringLiteral("lib") + name + QStringLiteral(".so");
#endif
}

/// Full path of one of the project's own providers, or an empty text.
QString findProvider(const QString &name)
{
    for (const QString &folder : providerFolders()) {
        QString path = folder + QLatin1Char('/') + providerFileName(name);
        if (QFileInfo::exists(path))
            return path;
    }
    return {};
}

/// Resolves all calls by name; returns the names of those that the library lacks.
QStringList resolveAll(QLibrary &library, d2xx::Functions &functions)
{
    QStringList missing;
    const auto resolve = [&library](const char *name, auto &function) {
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(library.resolve(name));
        return function != nullptr;
    };
    functions.forEachCall([&](const char *name, auto &function) {
        if (!resolve(name, function))
            missing << QString::fromLatin1(name);
    });
    functions.forEachOptionalCall(resolve);
    return missing;
}

/// The file that a function was really loaded from, which a name alone does not tell: empty where the system
/// does not know.
QString fileOf(d2xx::CreateDeviceInfoList *function)
{
#ifdef Q_OS_WIN
    HMODULE module = nullptr;
    std::array<wchar_t, 32768> path{}; // the longest that there is
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                                GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                            reinterpret_cast<LPCWSTR>(function), &module))
        return {};
    const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    const QString file = QString::fromWCharArray(path.data(), static_cast<qsizetype>(length));
#else
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void *>(function), &info) == 0)
        return {};
    const QString file = QFile::decodeName(info.dli_fname);
#endif
    return QFileInfo(file).canonicalFilePath();
}

D2xxLibrary withoutDriver(const QString &problem)
{
    D2xxLibrary result;
    result.driver = std::make_shared<D2xx>();
    result.problem = problem;
    return result;
}

D2xxLibrary loadFile(const QString &fileName)
{
    QLibrary library(fileName);
    if (!library.load())
        return withoutDriver(library.errorString());

    d2xx::Functions functions;
    const QStringList missing = resolveAll(library, functions);
    if (!missing.isEmpty()) {
        const QString name = library.fileName();
        library.unload();
        return withoutDriver(QStringLiteral("%1 lacks %2").arg(name, missing.join(QStringLiteral(", "))));
    }
    D2xxLibrary result;
    result.driver = std::make_shared<D2xx>(functions);
    result.path = fileOf(functions.createDeviceInfoList);
    if (result.path.isEmpty())
        result.path = library.fileName();
    result.isVirtual = functions.isSimulated != nullptr;
    return result;
}

D2xxLibrary loadProvider(const QString &name)
{
    const QString path = findProvider(name);
    if (path.isEmpty()) {
        return withoutDriver(QStringLiteral("%1 was not found in %2")
                                 .arg(providerFileName(name), providerFolders().join(QStringLiteral(", "))));
    }
    return loadFile(path);
}

D2xxLibrary loadDefault()
{
#ifdef Q_OS_WIN
    return loadFile(QStringLiteral("FTD2XX.dll"));
#else
    D2xxLibrary maker = loadFile(QStringLiteral("libftd2xx.so"));
    if (maker.driver->isUsable())
        return maker;
    D2xxLibrary open = loadProvider(openDriver);
    if (!open.driver->isUsable())
        open.problem = maker.problem + QStringLiteral("; ") + open.problem;
    return open;
#endif
}

} // namespace

D2xxLibrary D2xxLibrary::load(const QString &setting)
{
    if (setting.isEmpty())
        return loadDefault();
    if (setting == QStringLiteral("ftdi"))
        return loadProvider(openDriver);
    if (setting == QStringLiteral("virtual"))
        return loadProvider(virtualDetector);
    return loadFile(setting);
}

QString D2xxLibrary::description() const
{
    if (!driver->isUsable()) {
        return QStringLiteral("No driver library could be loaded, so no detector can be used.\n\n"
                              "Reason: ") +
               problem +
               QStringLiteral("\n\nTo use the virtual detector, set D2xxLibrary=virtual in config.ini and "
                              "start again.");
    }
    QString file = QStringLiteral("Driver library: ") + path;
    if (isVirtual) {
        return QStringLiteral("Virtual detector: everything shown is simulated, not measured.\n\n") + file;
    }
    return file;
}

QString D2xxLibrary::provenance() const
{
    if (!driver->isUsable())
        return QStringLiteral("驱动库加载失败：") + problem;
    return QStringLiteral("驱动库：") + path +
           (isVirtual ? QStringLiteral("（模拟数据）") : QStringLiteral("（非模拟数据）"));
}
