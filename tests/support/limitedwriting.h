#pragma once

#include <QString>
#include <QtGlobal>

#include <memory>

// Disks and folders that do not take what is written, for every user, the administrator included. What cannot
// be brought about ends the test program.

/// Nothing can be made in a folder below a temporary one while this lives, and a file that is marked as not
/// to be written is not written.
class ReadOnlyFolder
{
public:
    explicit ReadOnlyFolder(const QString &folder);
    ~ReadOnlyFolder();
    Q_DISABLE_COPY_MOVE(ReadOnlyFolder)

private:
    struct Means;
    std::unique_ptr<Means> m_means;
};

/// No file can grow beyond this size while it lives: the system refuses what would, by
/// SystemFailure::FileTooLarge.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(qint64 bytes);
    ~FileSizeLimit();
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

private:
    struct Means;
    std::unique_ptr<Means> m_means;
};

/// What is written under this name finds no room on the disk while it lives. The file must not be there
/// before, unless a FullFile of another process made it.
class FullFile
{
public:
    explicit FullFile(const QString &path);
    ~FullFile();
    Q_DISABLE_COPY_MOVE(FullFile)

private:
    struct Means;
    std::unique_ptr<Means> m_means;
};
