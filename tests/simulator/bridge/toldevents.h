#pragma once

#include <QTest>

#include <mutex>
#include <string>

/// Collects what the callback is told.
class ToldEvents
{
public:
    static void take(void *context, int arrived)
    {
        auto *self = static_cast<ToldEvents *>(context);
        const std::lock_guard lock(self->m_mutex);
        self->m_text += arrived == 1 ? '+' : '-';
    }

    std::string text()
    {
        const std::lock_guard lock(m_mutex);
        return m_text;
    }

    /// Waits until that is what was told.
    bool become(const std::string &expected)
    {
        return QTest::qWaitFor([&] { return text() == expected; }, 10000);
    }

private:
    std::mutex m_mutex;
    std::string m_text;
};
