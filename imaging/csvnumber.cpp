#include "imaging/csvnumber.h"

#include "imaging/pixelmath.h"

#include <QByteArray>
#include <QtGlobal>

#include <array>
#include <bit>
#include <charconv>
#include <cstring>

// Currents have four decimals, so nearly every double here is the one nearest to a whole number of ticks of
// 0.0001. Such a value is formatted with whole numbers and tables; all others are left to Qt.

namespace CsvNumber {
namespace {

constexpr auto ticksPerUnit = static_cast<quint64>(PixelMath::decimals);
static_assert(ticksPerUnit == 10000, "the tables hold four decimals");
constexpr double tickLimit = 999999.0; // above, rounding may lead to the exponent form

struct Digits
{
    char text[7];
    unsigned char length;
};
static_assert(sizeof(Digits) == 8);

/// "0" to "999".
constexpr std::array<Digits, 1000> wholeNumbers = [] {
    std::array<Digits, 1000> table{};
    for (unsigned int n = 0; n < table.size(); ++n) {
        Digits &digits = table[n];
        for (unsigned int divisor = n < 10 ? 1 : n < 100 ? 10 : 100; divisor != 0; divisor /= 10)
            digits.text[digits.length++] = static_cast<char>('0' + n / divisor % 10);
    }
    return table;
}();

/// ".0001" to ".9999" without zeros at the end; nothing for 0.
constexpr std::array<Digits, ticksPerUnit> fractions = [] {
    std::array<Digits, ticksPerUnit> table{};
    for (unsigned int n = 1; n < table.size(); ++n) {
        Digits &digits = table[n];
        digits.text[digits.length++] = '.';
        for (unsigned int rest = n, divisor = 1000; rest != 0; rest %= divisor, divisor /= 10)
            digits.text[digits.length++] = static_cast<char>('0' + rest / divisor);
    }
    return table;
}();

/// Copies the whole entry, which is quicker than as many characters as count.
char *append(char *out, const Digits &digits)
{
    std::memcpy(out, &digits, sizeof digits);
    return out + digits.length;
}

char *appendWhole(char *out, quint64 value)
{
    if (value < wholeNumbers.size())
        return append(out, wholeNumbers[value]);
    return std::to_chars(out, out + maxChars, value).ptr;
}

char *appendByLibrary(char *out, double value)
{
    const QByteArray text = QByteArray::number(value, 'g', 6);
    std::memcpy(out, text.constData(), static_cast<std::size_t>(text.size()));
    return out + text.size();
}

/// Is `value`, the double nearest to `ticks`, less than that number itself?
bool isBelow(double value, quint64 ticks)
{
    // value = mantissa / 2^shift. The difference of both sides times 2^shift is below 2^14 in magnitude, so
    // it is right although the products wrap around.
    const auto bits = std::bit_cast<quint64>(value);
    const quint64 mantissa = (bits & ((quint64{1} << 52) - 1)) | quint64{1} << 52;
    const quint64 shift = 1075 - (bits >> 52);
    return static_cast<qint64>(mantissa * ticksPerUnit - (ticks << shift)) < 0;
}

/// Rounds a value of 100 (a million ticks) and more to six digits.
quint64 roundedToSixDigits(double value, quint64 ticks)
{
    const quint64 unit = ticks < 10'000'000      ? 10
                         : ticks < 100'000'000   ? 100
                         : ticks < 1'000'000'000 ? 1000
                                                 : 10000;
    const quint64 rest = ticks % unit;
    // What looks like a half in ticks is one only when the double is not a little less.
    const bool up = rest > unit / 2 || (rest == unit / 2 && !isBelow(value, ticks));
    return ticks - rest + (up ? unit : 0);
}

} // namespace

char *append(char *out, double value)
{
    if (!(value >= 0 && value < tickLimit))
        return appendByLibrary(out, value);
    auto ticks = static_cast<quint64>(value * static_cast<double>(ticksPerUnit) + 0.5);
    if (std::bit_cast<quint64>(static_cast<double>(ticks) / static_cast<double>(ticksPerUnit)) !=
        std::bit_cast<quint64>(value))
        return appendByLibrary(out, value);
    if (ticks >= 100 * ticksPerUnit)
        ticks = roundedToSixDigits(value, ticks);
    out = appendWhole(out, ticks / ticksPerUnit);
    return append(out, fractions[ticks % ticksPerUnit]);
}

char *append(char *out, int value)
{
    if (value >= 0 && value < static_cast<int>(wholeNumbers.size()))
        return append(out, wholeNumbers[static_cast<std::size_t>(value)]);
    return std::to_chars(out, out + maxChars, value).ptr;
}

} // namespace CsvNumber
