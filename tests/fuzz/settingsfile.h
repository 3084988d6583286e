#pragma once

#include "tests/fuzz/target.h"

#include <QFile>
#include <QTemporaryDir>

/// A settings file for the time of one input. Each has a path that no other had: what was read of a path is
/// remembered for a while.
class SettingsFile
{
public:
    SettingsFile() : m_path(newPath()) { quiet(); }
    explicit SettingsFile(QByteArrayView content) : SettingsFile()
    {
        QFile file(m_path);
        Fuzz::require(file.open(QIODevice::WriteOnly) && file.write(content.toByteArray()) == content.size(),
                      "there is room for a settings file");
    }
    ~SettingsFile() { QFile::remove(m_path); }
    Q_DISABLE_COPY_MOVE(SettingsFile)

    [[nodiscard]] const QString &path() const { return m_path; }

    [[nodiscard]] QByteArray content() const
    {
        QFile file(m_path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    static QString newPath()
    {
        static const QTemporaryDir folder;
        static int number = 0;
        return folder.filePath(QStringLiteral("%1.ini").arg(++number));
    }

    /// What makes no sense is complained about: every other input.
    static void quiet()
    {
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    }

    QString m_path;
};
