// Numbers of CSV files against those of a text stream. Input: records of nine bytes, the first of which says
// what the others are.

#include "imaging/csvnumber.h"
#include "tests/fuzz/target.h"
#include "tests/imaging/straightforward/straightforward.h"

#include <bit>
#include <cmath>
#include <limits>
#include <memory>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

template <typename Number>
void tryNumber(Number number)
{
    // Of its own in memory, so that a character too many is seen.
    const auto room = std::make_unique<char[]>(CsvNumber::maxChars);
    const char *end = CsvNumber::append(room.get(), number);
    Fuzz::require(QByteArrayView(room.get(), end) == Straightforward::text(number),
                  "a number is written as a text stream writes it");
}

void tryWithNeighbours(double number)
{
    tryNumber(number);
    tryNumber(std::nextafter(number, infinity));
    tryNumber(std::nextafter(number, -infinity));
}

void tryRecord(uchar kind, quint64 bits)
{
    switch (kind % 5) {
    case 0:
        tryNumber(std::bit_cast<double>(bits));
        break;
    case 1: // a float
        tryNumber(double{std::bit_cast<float>(static_cast<quint32>(bits))});
        break;
    case 2: // a current
        tryWithNeighbours(static_cast<double>(bits % 100'000'000'000) / 10000);
        break;
    case 3: // a sum of currents, divided
        tryWithNeighbours(static_cast<double>(bits >> 16) / 10000 / static_cast<double>((bits & 0xFF) + 1));
        break;
    default:
        tryNumber(static_cast<int>(bits));
    }
}

} // namespace

void Fuzz::tryInput(QByteArrayView input)
{
    Reader reader(input);
    while (!reader.atEnd()) {
        const auto kind = reader.next<uchar>();
        tryRecord(kind, reader.next<quint64>());
    }
}
