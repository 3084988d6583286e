#include "ui/chrome/manual.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace {

QString pageIn(const QString &folder)
{
    return folder + QStringLiteral("/manual.html");
}

} // namespace

namespace Manual {

QStringList folders()
{
    const QString program = QCoreApplication::applicationDirPath();
    QStringList folders{program + QStringLiteral("/manual"),
                        QDir::cleanPath(program + QStringLiteral("/../share/qv1k/manual")),
                        QDir::cleanPath(program + QStringLiteral("/" QV1K_MANUAL_FROM_PROGRAM))};
    folders.removeDuplicates();
    return folders;
}

QString open(const QStringList &folders)
{
    for (const QString &folder : folders) {
        const QString page = pageIn(folder);
        if (!QFileInfo::exists(page))
            continue;
        if (QDesktopServices::openUrl(QUrl::fromLocalFile(page)))
            return {};
        return QCoreApplication::translate("Manual", "The system opens no HTML pages. The manual is %1")
            .arg(QDir::toNativeSeparators(page));
    }
    return QCoreApplication::translate("Manual", "The manual is not there: it was looked for in %1")
        .arg(QDir::toNativeSeparators(folders.join(QStringLiteral(", "))));
}

} // namespace Manual
