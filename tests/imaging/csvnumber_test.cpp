#include "imaging/csvnumber.h"
#include "imaging/pixelmath.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <QLocale>
#include <QRandomGenerator>
#include <QTextStream>

#include <bit>
#include <cmath>
#include <limits>
#include <vector>

namespace {

QByteArray text(auto value)
{
    char buffer[CsvNumber::maxChars];
    return {buffer, CsvNumber::append(buffer, value) - buffer};
}

/// Collects numbers and holds them against one text stream, many at a time.
class AgainstTextStream
{
public:
    void add(auto value)
    {
        m_stream << value << ',';
        m_stream.flush();
        m_ours += text(value);
        m_ours += ',';
        if (m_ours.size() > 60000)
            check();
    }
    ~AgainstTextStream() { check(); }

private:
    void check()
    {
        EXPECT_EQ(m_ours, m_expected);
        m_ours.clear();
        m_stream.seek(0);
        m_expected.clear();
    }

    QByteArray m_expected;
    QByteArray m_ours;
    QTextStream m_stream{&m_expected};
};

double current(qint64 count)
{
    return PixelMath::current(static_cast<qint32>(4096 + count), 25, 166);
}

} // namespace

TEST(CsvNumber, numbers_look_as_a_text_stream_writes_them)
{
    EXPECT_EQ(text(0.0), "0");
    EXPECT_EQ(text(0.0001), "0.0001");
    EXPECT_EQ(text(12.3456), "12.3456");
    EXPECT_EQ(text(150.602), "150.602");
    EXPECT_EQ(text(150.6024), "150.602");
    EXPECT_EQ(text(255.0), "255");
    EXPECT_EQ(text(100.5), "100.5");
    EXPECT_EQ(text(308433.7), "308434");
    EXPECT_EQ(text(1e6), "1e+06");
    EXPECT_EQ(text(1234567.0), "1.23457e+06");
    EXPECT_EQ(text(0.00001), "1e-05");
    EXPECT_EQ(text(-12.5), "-12.5");
    EXPECT_EQ(text(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(text(-std::numeric_limits<double>::infinity()), "-inf");
    EXPECT_EQ(text(std::numeric_limits<double>::quiet_NaN()), "nan");
}

TEST(CsvNumber, exact_halves_are_rounded_away_from_zero)
{
    EXPECT_EQ(text(100.3125), "100.313");
    EXPECT_EQ(text(100.0625), "100.063");
    EXPECT_EQ(text(100.1875), "100.188");
    EXPECT_EQ(text(1000.125), "1000.13");
    EXPECT_EQ(text(10000.25), "10000.3");
    EXPECT_EQ(text(100000.5), "100001");
    EXPECT_EQ(text(999.9995), "1000");
    EXPECT_EQ(text(99999.96), "100000");
}

TEST(CsvNumber, every_current_up_to_two_to_the_21_counts_is_written_like_by_a_text_stream)
{
    AgainstTextStream check;
    for (qint64 count = 0; count <= 1 << 21; ++count)
        check.add(current(count));
}

TEST(CsvNumber, currents_of_all_larger_counts_are_written_like_by_a_text_stream)
{
    AgainstTextStream check;
    constexpr qint64 most = std::numeric_limits<qint32>::max() - 4096;
    for (qint64 count = 1 << 21; count <= most; count += 1499)
        check.add(current(count));
    for (qint64 count = most - 20000; count <= most; ++count)
        check.add(current(count));
}

TEST(CsvNumber, what_looks_like_a_half_and_its_neighbours_are_written_like_by_a_text_stream)
{
    AgainstTextStream check;
    QRandomGenerator random(5);
    for (const int unit : {10, 100, 1000, 10000}) {
        const int halfUnit = unit / 2;
        for (int i = 0; i < 100000; ++i) {
            const int digits = 100000 + random.bounded(900000);
            const double half = (static_cast<double>(digits) * unit + halfUnit) / 10000;
            check.add(half);
            check.add(std::nextafter(half, 0.0));
            check.add(std::nextafter(half, 1e9));
        }
    }
}

TEST(CsvNumber, averages_of_several_frames_are_written_like_by_a_text_stream)
{
    AgainstTextStream check;
    QRandomGenerator random(6);
    for (int i = 0; i < 300000; ++i) {
        const int frames = 2 + random.bounded(15);
        double sum = 0;
        for (int n = 0; n < frames; ++n)
            sum += current(random.bounded(1 << 20));
        check.add(sum / frames);
    }
}

TEST(CsvNumber, doubles_of_any_kind_are_written_like_by_a_text_stream)
{
    AgainstTextStream check;
    QRandomGenerator random(8);
    for (int i = 0; i < 300000; ++i) {
        check.add(std::bit_cast<double>(random.generate64()));
        check.add((random.generateDouble() - 0.5) * 3e6);
    }
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double edge : {0.0, 0.0001, 0.00005, 1.0, 10.0, 99.9999, 100.0, 999.9995, 999999.0, 999999.5,
                              1e6, 1e15, infinity, std::numeric_limits<double>::denorm_min(),
                              std::numeric_limits<double>::max(), std::numeric_limits<double>::quiet_NaN()}) {
        for (const double value : {edge, std::nextafter(edge, -infinity), std::nextafter(edge, infinity)}) {
            check.add(value);
            check.add(-value);
        }
    }
}

TEST(CsvNumber, whole_numbers_are_written_like_by_a_text_stream)
{
    AgainstTextStream check;
    for (int value = -2000; value <= 600000; ++value)
        check.add(value);
    check.add(std::numeric_limits<int>::min());
    check.add(std::numeric_limits<int>::max());
}

TEST(CsvNumber, no_number_needs_more_room_than_it_is_given)
{
    for (const double value : {-std::numeric_limits<double>::min(), -1.23457e-308,
                               -std::numeric_limits<double>::max(), -123456.5, 308433.7, 999998.9999})
        EXPECT_LT(text(value).size(), CsvNumber::maxChars) << value;
    EXPECT_LT(text(std::numeric_limits<int>::min()).size(), CsvNumber::maxChars);
}

TEST(CsvNumber, the_locale_of_the_machine_does_not_matter)
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(text(12.3456), "12.3456");
    EXPECT_EQ(text(-1234.5), "-1234.5");
    EXPECT_EQ(text(123456), "123456");
    EXPECT_EQ(text(1e-7), "1e-07");
}
