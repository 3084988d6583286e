#include "imaging/stackfile.h"

StackFile::StackFile(const QString &path, OutputFile::Access access)
    : m_path(path), m_file(path, access), m_openingFailure(m_file.failure()),
      m_isBroken(!m_openingFailure.isEmpty())
{
}

QString StackFile::append(const StackFrame &frame)
{
    if (m_isBroken)
        return {};
    m_isBroken = true; // also when an exception is thrown
    write(frame);
    if (!m_file.failure().isEmpty())
        return m_file.failure();
    m_isBroken = false;
    m_frames += 1;
    m_end = m_file.size();
    return {};
}

QString StackFile::finish()
{
    if (m_isBroken && !takeBack(m_end))
        m_frames = 0;
    if (m_frames == 0)
        return {}; // what was wrong has been told, and the part goes with the file
    complete();
    return m_file.finish();
}

QJsonObject StackFile::entry(int) const
{
    return {};
}

bool StackFile::takeBack(qint64 end)
{
    return m_file.cutTo(end);
}
