#include "imaging/outputfile.h"

#include "imaging/failurelog.h"

OutputFile::OutputFile(const QString &path) : m_file(path)
{
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        fail(QStringLiteral("文件打开失败"));
}

void OutputFile::write(QByteArrayView bytes)
{
    while (m_failure.isEmpty() && !bytes.isEmpty()) {
        // A write that is cut short says why only when it is asked for the rest.
        const qint64 written = m_file.write(bytes.data(), bytes.size());
        if (written <= 0)
            fail(QStringLiteral("文件写入不完整"));
        else
            bytes = bytes.sliced(written);
    }
}

QString OutputFile::finish()
{
    if (m_failure.isEmpty()) {
        m_file.close();
        if (m_file.error() != QFileDevice::NoError)
            fail(QStringLiteral("文件关闭失败"));
    }
    return m_failure;
}

void OutputFile::fail(const QString &what)
{
    m_failure = failureLine(what, m_file.fileName(), m_file.errorString());
}
