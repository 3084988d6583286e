#include "process/userfolder.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace {

QString parentFolder()
{
#ifdef Q_OS_WIN
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
#else
    return QStandardPaths::writableLocation(QStandardPaths::HomeLocation);
#endif
}

QString cannot(const QString &what, const QString &path, const QString &reason)
{
    return QStringLiteral("%1 cannot be %2: %3").arg(QDir::toNativeSeparators(path), what, reason);
}

QString writeSettings(const QString &path)
{
    QByteArrayView settings("[General]\nD2xxLibrary=virtual\n");
    QFile file(path);
    // Whoever made it meanwhile wins.
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
        return file.exists() ? QString() : cannot(QStringLiteral("made"), path, file.errorString());
    while (!settings.isEmpty()) {
        // A write that is cut short says why only when it is asked for the rest.
        const qint64 written = file.write(settings.data(), settings.size());
        if (written <= 0) {
            const QString reason = file.errorString();
            file.remove(); // it would pass for the operator's own the next time
            return cannot(QStringLiteral("written"), path, reason);
        }
        settings = settings.sliced(written);
    }
    return {};
}

} // namespace

namespace UserFolder {

QString path(bool virtualDetector)
{
    const QString parent = parentFolder();
    if (parent.isEmpty())
        return {};
    return parent + (virtualDetector ? QStringLiteral("/QV1K virtual detector") : QStringLiteral("/QV1K"));
}

QString prepare(const QString &folder, bool virtualDetector)
{
    if (folder.isEmpty())
        return QStringLiteral("The user has no folder for documents");
    if (!QDir().mkpath(folder))
        return cannot(QStringLiteral("made"), folder, QStringLiteral("the folder above it takes none"));
    return virtualDetector ? writeSettings(folder + QStringLiteral("/config.ini")) : QString();
}

} // namespace UserFolder
