#pragma once

#include <QDesktopServices>
#include <QList>
#include <QObject>
#include <QUrl>

/// Takes the pages and folders that are to be opened, instead of the system's programs.
class SystemOpener : public QObject
{
    Q_OBJECT

public:
    SystemOpener() { QDesktopServices::setUrlHandler(scheme, this, "take"); }
    ~SystemOpener() override { QDesktopServices::unsetUrlHandler(scheme); }
    Q_DISABLE_COPY_MOVE(SystemOpener)

    /// From now on there is no program for them.
    void refuse() { QDesktopServices::setUrlHandler(scheme, this, "aSlotThatIsNotThere"); }

    QList<QUrl> opened;

public Q_SLOTS:
    void take(const QUrl &url) { opened << url; }

private:
    const QString scheme = QStringLiteral("file");
};
