#include "tests/support/limitedwriting.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <csignal>
#include <cstring>

#include <sys/resource.h>
#include <unistd.h>

namespace {

void require(bool done, const char *what)
{
    if (!done)
        qFatal("%s: %s", what, std::strerror(errno));
}

constexpr QFile::Permissions readableForAll = QFile::ReadUser | QFile::ExeUser | QFile::ReadGroup |
                                              QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;

bool isOpenForAll(const QString &folder)
{
    return QFile::permissions(folder).testFlags(QFile::ExeGroup | QFile::ExeOther);
}

} // namespace

/// To the administrator no folder is read-only: the process goes on as a user without rights meanwhile.
struct ReadOnlyFolder::Means
{
    QString folder;
    uid_t user = geteuid();
};

ReadOnlyFolder::ReadOnlyFolder(const QString &folder) : m_means(std::make_unique<Means>(Means{folder}))
{
    require(QFile::setPermissions(folder, readableForAll), "read-only folder");
    if (m_means->user != 0)
        return;
    // The way to the folder must be open: a temporary folder lets nobody else in.
    for (QString above = QFileInfo(folder).path(); !isOpenForAll(above); above = QFileInfo(above).path())
        require(QFile::setPermissions(above, QFile::permissions(above) | readableForAll), "way to a folder");
    constexpr uid_t nobody = 65534;
    require(seteuid(nobody) == 0, "user without rights");
}

ReadOnlyFolder::~ReadOnlyFolder()
{
    require(seteuid(m_means->user) == 0, "user from before");
    require(QFile::setPermissions(m_means->folder, QFile::ReadUser | QFile::WriteUser | QFile::ExeUser),
            "folder from before");
}

struct FileSizeLimit::Means
{
    rlimit before{};
    void (*handler)(int) = nullptr;
};

FileSizeLimit::FileSizeLimit(qint64 bytes) : m_means(std::make_unique<Means>())
{
    require(getrlimit(RLIMIT_FSIZE, &m_means->before) == 0, "limit of files");
    m_means->handler = std::signal(SIGXFSZ, SIG_IGN); // the write fails instead
    const rlimit limited{static_cast<rlim_t>(bytes), m_means->before.rlim_max};
    require(setrlimit(RLIMIT_FSIZE, &limited) == 0, "limit of files");
}

FileSizeLimit::~FileSizeLimit()
{
    require(setrlimit(RLIMIT_FSIZE, &m_means->before) == 0, "limit of files from before");
    std::signal(SIGXFSZ, m_means->handler);
}

/// A link leads to a device that is always full.
struct FullFile::Means
{
    QString path;
};

FullFile::FullFile(const QString &path) : m_means(std::make_unique<Means>(Means{path}))
{
    require(QFileInfo(path).isSymLink() || QFile::link(QStringLiteral("/dev/full"), path), "full disk");
}

FullFile::~FullFile()
{
    QFile::remove(m_means->path);
}
