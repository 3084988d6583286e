#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QtEndian>

#include <cstdio>
#include <cstdlib>
#include <cstring>

/// What every target has: an input is tried, and rules are held against what comes of it.
namespace Fuzz {

/// Defined by each target. Comes back only when every rule holds; the input ends where it ends in memory.
void tryInput(QByteArrayView input);

/// Ends the process with the rule when it is broken: this is how a finding is reported.
inline void require(bool holds, const char *rule)
{
    if (holds)
        return;
    std::fprintf(stderr, "broken: %s\n", rule);
    std::abort();
}

/// Takes numbers from the front of an input; what is missing at its end is 0.
class Reader
{
public:
    explicit Reader(QByteArrayView input) : m_rest(input) {}

    template <typename Number>
    [[nodiscard]] Number next()
    {
        Number number{};
        const qsizetype length = qMin(m_rest.size(), static_cast<qsizetype>(sizeof number));
        std::memcpy(&number, m_rest.data(), static_cast<std::size_t>(length));
        m_rest = m_rest.sliced(length);
        return number;
    }

    [[nodiscard]] QByteArrayView rest() const { return m_rest; }
    [[nodiscard]] bool atEnd() const { return m_rest.isEmpty(); }

private:
    QByteArrayView m_rest;
};

/// An input that is a protocol listing: each line the bytes of one write or read, in hexadecimal digits.
[[nodiscard]] inline QList<QByteArray> listing(QByteArrayView input)
{
    QList<QByteArray> lines = input.toByteArray().split('\n');
    for (QByteArray &line : lines)
        line = QByteArray::fromHex(line);
    return lines;
}

} // namespace Fuzz
