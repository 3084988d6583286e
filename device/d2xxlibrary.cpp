#include "device/d2xxlibrary.h"

#include "device/libraryfiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <QStringList>

#include <type_traits>

namespace {

const QString virtualDetector = QStringLiteral("d2xx_virtual");
const QString openDriver = QStringLiteral("d2xx_ftdi");

/// Folders in which the project's own providers are looked for: as they are packed for Windows, as they are
/// built, as they are installed.
QStringList providerFolders()
{
    const QString beside = QCoreApplication::applicationDirPath();
    return {beside, QDir::cleanPath(beside + QStringLiteral("/../lib")),
            QDir::cleanPath(beside + QStringLiteral("/" QV1K_PROVIDERS_FROM_PROGRAM))};
}

/// Full path of one of the project's own providers, or an empty text.
QString findProvider(const QString &name)
{
    for (const QString &folder : providerFolders()) {
        QString path = folder + QLatin1Char('/') + LibraryFiles::providerName(name);
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
    result.path = LibraryFiles::fileOf(reinterpret_cast<const void *>(functions.createDeviceInfoList));
    if (result.path.isEmpty())
        result.path = library.fileName();
    result.isVirtual = functions.isSimulated != nullptr;
    return result;
}

D2xxLibrary notFound(const QString &fileName, const QStringList &folders)
{
    return withoutDriver(
        QStringLiteral("%1 was not found in %2").arg(fileName, folders.join(QStringLiteral(", "))));
}

D2xxLibrary loadProvider(const QString &name)
{
    const QString path = findProvider(name);
    return path.isEmpty() ? notFound(LibraryFiles::providerName(name), providerFolders()) : loadFile(path);
}

D2xxLibrary loadNamed(const QString &name)
{
    const QString file = LibraryFiles::toLoad(name);
    return file.isEmpty() ? notFound(name, LibraryFiles::searchedFolders()) : loadFile(file);
}

D2xxLibrary loadDefault()
{
    D2xxLibrary maker = loadNamed(LibraryFiles::makersName());
#ifdef Q_OS_WIN
    return maker;
#else
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
    return loadNamed(setting);
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
