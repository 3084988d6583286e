#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

/// An empty working folder for the life of a test: the program keeps its settings, log and recordings there.
class WorkingFolder
{
public:
    WorkingFolder() : m_before(QDir::currentPath()) { QDir::setCurrent(m_folder.path()); }
    ~WorkingFolder() { QDir::setCurrent(m_before); }
    Q_DISABLE_COPY_MOVE(WorkingFolder)

    [[nodiscard]] QString path() const { return m_folder.path(); }
    [[nodiscard]] QString filePath(const QString &name) const { return m_folder.filePath(name); }

    /// Writes a file whole, name relative to the folder.
    void write(const QString &name, const QByteArray &content) const
    {
        QFile file(filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(file.errorString());
        ASSERT_EQ(file.write(content), content.size());
    }

    /// The whole content of a file; empty when there is none.
    [[nodiscard]] QByteArray read(const QString &name) const
    {
        QFile file(filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// The same of a text, whatever ends a line on this system.
    [[nodiscard]] QByteArray readText(const QString &name) const { return read(name).replace("\r\n", "\n"); }

private:
    QTemporaryDir m_folder;
    QString m_before;
};
