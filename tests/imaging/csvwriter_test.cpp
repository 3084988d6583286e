#include "imaging/csvwriter.h"
#include "imaging/pixelmath.h"
#include "tests/imaging/straightforward/straightforward.h"
#include "tests/support/limitedwriting.h"
#include "tests/support/systemreason.h"
#include "tests/support/workingfolder.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QLocale>
#include <QRandomGenerator>

#include <charconv>
#include <cmath>
#include <limits>

namespace {

constexpr std::size_t pixels = Straightforward::pixels;

std::vector<double> currentsOfAllKinds()
{
    QRandomGenerator random(1);
    std::vector<double> values(pixels);
    for (std::size_t i = 0; i < pixels; ++i)
        values[i] = random.bounded(1 << (i % 31)) / 10000.0;
    const double odd[] = {0,
                          0.0001,
                          12.3456,
                          150.602,
                          308433.7,
                          1e6,
                          1.5e300,
                          -0.0,
                          -3.25,
                          1.0 / 3,
                          std::numeric_limits<double>::infinity(),
                          std::numeric_limits<double>::quiet_NaN()};
    for (std::size_t i = 0; i < 5000; ++i)
        values[static_cast<std::size_t>(random.bounded(static_cast<int>(pixels)))] = odd[i % std::size(odd)];
    values[1023] = 308433.7;
    values[pixels - 1] = -1.23457e-308;
    return values;
}

std::vector<int> levelsOfAllKinds()
{
    QRandomGenerator random(2);
    std::vector<int> values(pixels);
    for (std::size_t i = 0; i < pixels; ++i)
        values[i] = i % 50 == 0 ? static_cast<int>(random.generate()) : random.bounded(300);
    return values;
}

} // namespace

TEST(CsvWriter, a_data_file_is_the_one_of_a_text_stream_to_the_byte)
{
    const WorkingFolder folder;
    const std::vector<double> values = currentsOfAllKinds();
    Straightforward::writeCsv("expected.csv", values);
    CsvWriter writer;
    EXPECT_EQ(writer.write("ours.csv", values), QString());
    EXPECT_TRUE(folder.read("ours.csv") == folder.read("expected.csv"));
}

TEST(CsvWriter, a_grey_level_file_is_the_one_of_a_text_stream_to_the_byte)
{
    const WorkingFolder folder;
    const std::vector<int> values = levelsOfAllKinds();
    Straightforward::writeCsv("expected.csv", values);
    CsvWriter writer;
    EXPECT_EQ(writer.write("ours.csv", values), QString());
    EXPECT_TRUE(folder.read("ours.csv") == folder.read("expected.csv"));
}

TEST(CsvWriter, a_german_locale_changes_no_byte)
{
    const WorkingFolder folder;
    const std::vector<double> values = currentsOfAllKinds();
    CsvWriter writer;
    EXPECT_EQ(writer.write("before.csv", values), QString());
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(writer.write("german.csv", values), QString());
    EXPECT_TRUE(folder.read("german.csv") == folder.read("before.csv"));
}

TEST(CsvWriter, a_file_has_1024_lines_of_1024_values)
{
    const WorkingFolder folder;
    CsvWriter writer;
    EXPECT_EQ(writer.write("zero.csv", std::vector<double>(pixels)), QString());
    const QByteArray text = folder.read("zero.csv");
    EXPECT_TRUE(text == (QByteArray("0,").repeated(1023) + "0\n").repeated(1024));
}

TEST(CsvWriter, a_writer_leaves_nothing_of_a_longer_file_before)
{
    const WorkingFolder folder;
    CsvWriter writer;
    EXPECT_EQ(writer.write("a.csv", std::vector<double>(pixels, -1.23457e-308)), QString());
    EXPECT_EQ(writer.write("a.csv", std::vector<double>(pixels, 7)), QString());
    EXPECT_TRUE(folder.read("a.csv") == (QByteArray("7,").repeated(1023) + "7\n").repeated(1024));
}

TEST(CsvWriter, a_file_that_cannot_be_opened_is_named_with_the_reason)
{
    const WorkingFolder folder;
    CsvWriter writer;
    const QString failure = writer.write("missing/a.csv", std::vector<double>(pixels));
    EXPECT_TRUE(failure.contains("missing/a.csv"));
    EXPECT_TRUE(failure.contains(systemReason(SystemFailure::NoSuchFolder)));
}

TEST(CsvWriter, a_file_that_a_full_disk_cuts_is_named_with_the_reason)
{
    const WorkingFolder folder;
    const FullFile full("a.csv");
    CsvWriter writer;
    const QString failure = writer.write("a.csv", std::vector<int>(pixels));
    EXPECT_TRUE(failure.contains("a.csv"));
    EXPECT_TRUE(failure.contains(systemReason(SystemFailure::DiskFull)));
    EXPECT_FALSE(failure.contains(u'\n'));
}

TEST(CsvWriter, a_plain_parser_reads_the_values_back_to_six_digits)
{
    const WorkingFolder folder;
    QRandomGenerator random(3);
    std::vector<double> values(pixels);
    for (double &value : values)
        value =
            PixelMath::current(static_cast<qint32>(random.generate() >> (1 + random.bounded(31))), 25, 166);
    CsvWriter writer;
    ASSERT_EQ(writer.write("a.csv", values), QString());
    const QByteArray text = folder.read("a.csv");
    const char *at = text.constData();
    const char *const end = at + text.size();
    for (std::size_t i = 0; i < pixels; ++i) {
        double value = -1;
        const auto [after, error] = std::from_chars(at, end, value);
        ASSERT_EQ(error, std::errc());
        ASSERT_EQ(*after, i % 1024 == 1023 ? '\n' : ',');
        ASSERT_LE(std::abs(value - values[i]), 5.0001e-6 * values[i]) << i;
        at = after + 1;
    }
    EXPECT_EQ(at, end);
}

TEST(CsvWriter, a_path_with_percent_signs_is_reported_as_it_is)
{
    const WorkingFolder folder;
    CsvWriter writer;
    EXPECT_TRUE(writer.write("no/%1%2%3.csv", std::vector<int>(pixels)).contains("no/%1%2%3.csv"));
}
