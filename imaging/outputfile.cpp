#include "imaging/outputfile.h"

#include "imaging/failurelog.h"

namespace {

QIODevice::OpenMode modeOf(OutputFile::Access access)
{
    if (access == OutputFile::Access::Write)
        return QIODevice::WriteOnly | QIODevice::Unbuffered;
    return QIODevice::ReadWrite | QIODevice::Truncate | QIODevice::Unbuffered;
}

} // namespace

OutputFile::OutputFile(const QString &path, Access access) : m_place(path), m_file(m_place.partPath())
{
    const QString what = QStringLiteral("文件打开失败");
    if (!m_place.problem().isEmpty())
        fail(what, m_place.problem());
    else if (!m_file.open(modeOf(access)))
        fail(what, m_file.errorString());
}

void OutputFile::write(QByteArrayView bytes)
{
    while (m_failure.isEmpty() && !bytes.isEmpty()) {
        // A write that is cut short says why only when it is asked for the rest.
        const qint64 written = m_file.write(bytes.data(), bytes.size());
        if (written <= 0)
            giveUp(m_file.errorString());
        else
            bytes = bytes.sliced(written);
    }
}

void OutputFile::writeAt(qint64 offset, QByteArrayView bytes)
{
    if (m_failure.isEmpty() && m_file.pos() != offset && !m_file.seek(offset))
        giveUp(m_file.errorString());
    write(bytes);
}

qint64 OutputFile::readAt(qint64 offset, std::span<char> bytes)
{
    return m_file.seek(offset) ? m_file.read(bytes.data(), static_cast<qint64>(bytes.size())) : 0;
}

void OutputFile::giveUp(const QString &reason)
{
    if (m_failure.isEmpty())
        fail(QStringLiteral("文件写入不完整"), reason);
}

bool OutputFile::cutTo(qint64 size)
{
    if (!m_file.isOpen() || !m_file.resize(size) || !m_file.seek(size))
        return false;
    m_failure.clear();
    return true;
}

QString OutputFile::finish()
{
    if (!m_failure.isEmpty())
        return m_failure;
    m_file.close();
    if (m_file.error() != QFileDevice::NoError)
        fail(QStringLiteral("文件关闭失败"), m_file.errorString());
    else if (const QString reason = m_place.finish(); !reason.isEmpty())
        fail(QStringLiteral("文件改名失败"), reason);
    return m_failure;
}

void OutputFile::fail(const QString &what, const QString &reason)
{
    m_failure = failureLine(what, m_place.path(), reason);
}
