#pragma once

#include <QCoreApplication>
#include <QList>
#include <QObject>
#include <QTest>

#include <tuple>

/// What a signal told, as it arrives on the thread that made this, whichever thread emits it. QSignalSpy
/// notes it on the thread that emits, without a lock.
template <typename... Arguments>
class ArrivedSignals
{
public:
    template <typename Sender>
    ArrivedSignals(Sender &sender, void (Sender::*signal)(Arguments...))
    {
        QObject::connect(&sender, signal, &m_context, [this](Arguments... arguments) {
            m_told.append(std::tuple<Arguments...>(arguments...));
        });
    }
    Q_DISABLE_COPY_MOVE(ArrivedSignals)

    /// Those that are on their way included.
    [[nodiscard]] qsizetype count()
    {
        QCoreApplication::sendPostedEvents(&m_context);
        return m_told.size();
    }
    /// Waits for one more than have arrived by now.
    [[nodiscard]] bool wait(int timeoutMs)
    {
        const qsizetype before = m_told.size();
        return QTest::qWaitFor([&] { return m_told.size() > before; }, timeoutMs);
    }
    /// What the first of them told.
    std::tuple<Arguments...> takeFirst() { return m_told.takeFirst(); }

private:
    QObject m_context;
    QList<std::tuple<Arguments...>> m_told;
};
