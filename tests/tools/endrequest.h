#pragma once

#include <gtest/gtest.h>

#include <QList>
#include <QProcess>

/// The ways in which the system asks a program without a window to end, and how it is seen that the program
/// ended by one: signals on POSIX systems; on Windows the events of a console, which the programs on it share
/// with the test.
class EndRequest
{
public:
    /// Every kind; the first ones are those that any program gets.
    static QList<EndRequest> all();
    /// That of a person at the keyboard.
    static EndRequest common() { return all().constFirst(); }

    /// To be called before the program is started.
    static void prepare(QProcess &process);
    /// Asks the program that was started.
    void send(const QProcess &process) const;
    /// Whether the program ended by this, as whoever started it sees it.
    [[nodiscard]] bool ended(const QProcess &process) const;

    [[nodiscard]] const char *name() const { return m_name; }

private:
    EndRequest(int number, const char *name) : m_number(number), m_name(name) {}

    int m_number; ///< of the signal or event
    const char *m_name;
};

/// How a test's parameter is named.
inline void PrintTo(const EndRequest &request, std::ostream *stream)
{
    *stream << request.name();
}
