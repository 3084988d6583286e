#pragma once

#include <QMutex>
#include <QStringList>
#include <QtGlobal>

/// Collects what is written to the debug output while it lives, from every thread. One at a time.
class DebugOutput
{
public:
    DebugOutput()
    {
        lines().clear();
        m_before = qInstallMessageHandler(&DebugOutput::take);
    }
    ~DebugOutput() { qInstallMessageHandler(m_before); }
    Q_DISABLE_COPY_MOVE(DebugOutput)

    [[nodiscard]] QStringList messages() const
    {
        const QMutexLocker lock(&mutex());
        return lines();
    }

    [[nodiscard]] bool contains(const QString &text) const { return messages().join(u'\n').contains(text); }

private:
    static QMutex &mutex()
    {
        static QMutex instance;
        return instance;
    }
    static QStringList &lines()
    {
        static QStringList instance;
        return instance;
    }
    static void take(QtMsgType, const QMessageLogContext &, const QString &message)
    {
        const QMutexLocker lock(&mutex());
        lines().append(message);
    }

    QtMessageHandler m_before = nullptr;
};
