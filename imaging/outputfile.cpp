#include "imaging/outputfile.h"

#include "imaging/failurelog.h"

OutputFile::OutputFile(const QString &path) : m_place(path), m_file(m_place.partPath())
{
    const QString what = QStringLiteral("文件打开失败");
    if (!m_place.problem().isEmpty())
        fail(what, m_place.problem());
    else if (!m_file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        fail(what, m_file.errorString());
}

void OutputFile::write(QByteArrayView bytes)
{
    while (m_failure.isEmpty() && !bytes.isEmpty()) {
        // A write that is cut short says why only when it is asked for the rest.
        const qint64 written = m_file.write(bytes.data(), bytes.size());
        if (written <= 0)
            fail(QStringLiteral("文件写入不完整"), m_file.errorString());
        else
            bytes = bytes.sliced(written);
    }
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
