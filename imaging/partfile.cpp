#include "imaging/partfile.h"

#include <QFile>
#include <QFileInfo>

#include <filesystem>
#include <system_error>

namespace {

QString partName(const QString &path, PartFile::Ending ending)
{
    const QString part = QStringLiteral(".part");
    const QString last = QFileInfo(path).suffix();
    if (ending == PartFile::Ending::Part || last.isEmpty())
        return path + part;
    return path.chopped(last.size() + 1) + part + u'.' + last;
}

/// Why a file cannot be written; nothing is changed in it.
QString replacingProblem(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly | QIODevice::Unbuffered)
               ? QString()
               : file.errorString();
}

} // namespace

PartFile::PartFile(const QString &path, Ending ending) : m_path(path), m_target(path)
{
    const QFileInfo there(path);
    if (there.exists())
        m_target = there.canonicalFilePath();
    m_part = partName(m_target, ending);
    if (!there.exists())
        return;
    if (there.isFile() || there.isDir())
        m_problem = replacingProblem(m_target);
    else
        m_part = m_target;
}

PartFile::~PartFile()
{
    if (!m_finished && m_part != m_target)
        QFile::remove(m_part);
}

QString PartFile::finish()
{
    if (m_part != m_target) {
        std::error_code error;
        std::filesystem::rename(QFileInfo(m_part).filesystemFilePath(),
                                QFileInfo(m_target).filesystemFilePath(), error);
        if (error)
            return QString::fromLocal8Bit(error.message());
    }
    m_finished = true;
    return {};
}
