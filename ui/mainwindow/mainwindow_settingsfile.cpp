// The settings file: how it is read and written, and what is told when it cannot be; and the page that tells
// it.

#include "ui/mainwindow.h"

#include "device/parameters/storedvalue.h"
#include "log/logmanager.h"

#include <QDir>

QVariant mainwindow::value(const QString &key, const QVariant &defaultValue)
{
    m_settings.sync();
    return storedValue(m_settings, key, defaultValue);
}

void mainwindow::setValue(const QString &key, const QVariant &newValue)
{
    m_settings.setValue(key, newValue);
    settingsWritten();
}

void mainwindow::settingsWritten()
{
    // Once for all that is written in one go: looking means writing the file.
    if (m_settingsCheckDue)
        return;
    m_settingsCheckDue = true;
    QMetaObject::invokeMethod(this, &mainwindow::checkSettings, Qt::QueuedConnection);
}

void mainwindow::checkSettings()
{
    m_settingsCheckDue = false;
    m_settings.sync();
    // A file that could not be understood is replaced when it is written: that is no failure.
    if (m_settings.status() != QSettings::AccessError || m_settingsFailureTold)
        return;
    const QString path = QDir::toNativeSeparators(QDir(m_settings.fileName()).absolutePath());
    LogManager::instance()->writeLog(QStringLiteral("配置文件写入失败：") + path);
    setSystemNote(SystemNote::Settings, tr("The settings could not be written to ") + path);
    m_settingsFailureTold = true;
}
