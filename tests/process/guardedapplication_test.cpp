#include "process/guardedapplication.h"

#include "tests/support/debugoutput.h"
#include "tests/support/logfile.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTimer>

#include <stdexcept>

namespace {

/// Stands in for an application: its receivers throw.
struct Throwing
{
    virtual ~Throwing() = default;
    virtual bool notify(QObject *, QEvent *)
    {
        if (isKnown)
            throw std::runtime_error("no memory");
        throw 1;
    }

    bool isKnown = true;
};

} // namespace

TEST(GuardedApplication, goes_on_when_an_event_handler_throws_and_logs_it)
{
    const LogFile log;
    GuardedApplication<Throwing> application;
    EXPECT_FALSE(application.notify(nullptr, nullptr));
    EXPECT_TRUE(log.waitForMessage(QStringLiteral("程序异常：no memory")));
    application.isKnown = false;
    EXPECT_FALSE(application.notify(nullptr, nullptr));
    EXPECT_TRUE(log.waitForMessage(QStringLiteral("程序异常：unknown")));
}

TEST(GuardedApplication, without_a_log_tells_it_on_the_debug_output)
{
    const DebugOutput output;
    GuardedApplication<Throwing> application;
    EXPECT_FALSE(application.notify(nullptr, nullptr));
    EXPECT_TRUE(output.contains(QStringLiteral("程序异常：no memory")));
}

TEST(GuardedApplication, with_a_log_that_could_not_be_opened_tells_it_on_the_debug_output)
{
    const UnopenedLog log;
    const DebugOutput output;
    GuardedApplication<Throwing> application;
    EXPECT_FALSE(application.notify(nullptr, nullptr));
    EXPECT_TRUE(output.contains(QStringLiteral("程序异常：no memory")));
}
