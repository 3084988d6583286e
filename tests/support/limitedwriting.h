#pragma once

#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QString>

#include <csignal>

#include <sys/resource.h>
#include <unistd.h>

/// Makes a folder below a temporary one read-only while it lives. For the administrator too, to whom no
/// folder is: the process goes on as a user without rights meanwhile.
class ReadOnlyFolder
{
public:
    explicit ReadOnlyFolder(const QString &folder) : m_folder(folder)
    {
        EXPECT_TRUE(QFile::setPermissions(folder, forAll));
        if (m_user != 0)
            return;
        // The way to the folder must be open: a temporary folder lets nobody else in.
        for (QString above = QFileInfo(folder).path(); !isOpen(above); above = QFileInfo(above).path())
            EXPECT_TRUE(QFile::setPermissions(above, QFile::permissions(above) | forAll));
        constexpr uid_t nobody = 65534;
        EXPECT_EQ(seteuid(nobody), 0);
    }
    ~ReadOnlyFolder()
    {
        EXPECT_EQ(seteuid(m_user), 0);
        EXPECT_TRUE(QFile::setPermissions(m_folder, QFile::ReadUser | QFile::WriteUser | QFile::ExeUser));
    }
    Q_DISABLE_COPY_MOVE(ReadOnlyFolder)

private:
    static constexpr QFile::Permissions forAll = QFile::ReadUser | QFile::ExeUser | QFile::ReadGroup |
                                                 QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;

    static bool isOpen(const QString &folder)
    {
        return QFile::permissions(folder).testFlags(QFile::ExeGroup | QFile::ExeOther);
    }

    QString m_folder;
    uid_t m_user = geteuid();
};

/// No file can grow beyond this size while it lives: a write that would is cut, as on a disk that is full.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &m_before), 0);
        m_handler = std::signal(SIGXFSZ, SIG_IGN); // the write fails instead
        const rlimit limited{bytes, m_before.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limited), 0);
    }
    ~FileSizeLimit()
    {
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &m_before), 0);
        std::signal(SIGXFSZ, m_handler);
    }
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

private:
    rlimit m_before{};
    void (*m_handler)(int) = nullptr;
};
