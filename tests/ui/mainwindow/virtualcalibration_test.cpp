#include "tests/imaging/straightforward/straightforward.h"
#include "tests/ui/mainwindow/virtualwindow.h"

#include <QDoubleSpinBox>
#include <QProgressBar>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>
#include <vector>

/// Two-point calibration by the buttons, with the light of the virtual detector switched as by hand.
class CalibrationOnVirtualDetector : public MainWindowOnVirtualDetector
{
protected:
    /// What a picture of an even light looks like.
    struct Evenness
    {
        double mean = 0;
        double pixels = 0;  ///< standard deviation from pixel to pixel
        double columns = 0; ///< the same of the means of the columns: the stripes, nearly free of noise
    };

    static Evenness evennessOf(const QImage &image)
    {
        std::vector<double> levels(image.constBits(), image.constBits() + image.sizeInBytes());
        std::vector<double> columns(1024);
        for (std::size_t i = 0; i < levels.size(); ++i)
            columns[i % 1024] += levels[i] / 1024;
        // Without the few pixels that are dead or hot: calibration cannot help them.
        constexpr auto faulty = 50;
        std::ranges::sort(levels);
        const std::span<const double> sound = std::span(levels).subspan(faulty, levels.size() - 2 * faulty);
        return {meanOf(sound), deviationOf(sound), deviationOf(columns)};
    }

    static double meanOf(std::span<const double> values)
    {
        return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
    }

    static double deviationOf(std::span<const double> values)
    {
        const double mean = meanOf(values);
        double squares = 0;
        for (const double value : values)
            squares += (value - mean) * (value - mean);
        return std::sqrt(squares / static_cast<double>(values.size()));
    }

    /// Lights the flat scene, and waits until the frames show it.
    void light(double share)
    {
        settleVirtualDetector(folder, "Scene=flat\nLight=" + QByteArray::number(share) + "\n");
        const auto isLit = [&] {
            return std::abs(meanOf(pipeline().lastFrame()) - share * fullLight) < 0.05 * fullLight;
        };
        ASSERT_TRUE(QTest::qWaitFor(isLit, 20000)) << meanOf(pipeline().lastFrame());
        waitForPictures(1);
    }

    void capture(const char *captureButton, const char *success)
    {
        click(captureButton);
        waitForText("label_calistate", success);
        EXPECT_FALSE(button(captureButton)->isChecked());
        EXPECT_EQ(find<QProgressBar>("progressBar_cali")->value(), 1);
    }

    /// Shows another of the detector's patterns: they are free of noise.
    void startPattern(const char *test)
    {
        for (const char *name : {"testImage3", "testImage4"})
            find<QPushButton>(name)->setChecked(qstrcmp(name, test) == 0);
        start();
        waitForPictures(1);
    }

    [[nodiscard]] QByteArray expectedCsv(const std::vector<double> &values) const
    {
        Straightforward::writeCsv(folder.filePath("expected.csv"), values);
        return folder.read("expected.csv");
    }

    static constexpr double fullLight = 100.0; ///< nA
};

TEST_F(CalibrationOnVirtualDetector, evens_out_the_pixels_at_full_and_at_half_light)
{
    open("Scene=flat\nLight=0\n");
    // Half light is grey level 127 either way: half of the range, and half way between the references.
    find<QDoubleSpinBox>("doubleSpinBox_contrast")->setValue(1.5);
    start();
    light(0.5);
    const Evenness plain = evennessOf(picture);

    light(0);
    click("pushButton_cali");
    capture("pushButton_full_off", "Full Off Success");
    light(1);
    capture("pushButton_full_on", "Full On Success");
    waitForPictures(2);
    const Evenness full = evennessOf(picture);
    light(0.5);
    const Evenness half = evennessOf(picture);
    light(0);
    const Evenness dark = evennessOf(picture);
    stop();

    // Measured: plain 1.40 from pixel to pixel and 0.504 from column to column, calibrated 0.00 and 0.019 at
    // half light, 0.50 and 0.039 at full light, where levels 254 and 255 meet.
    EXPECT_NEAR(plain.mean, 127.1, 1.0);
    EXPECT_NEAR(half.mean, 127.0, 0.5);
    EXPECT_GT(full.mean, 254.0);
    EXPECT_LT(dark.mean, 0.1);
    EXPECT_GT(plain.pixels, 1.2);
    EXPECT_GT(plain.columns, 0.4);
    EXPECT_LT(half.pixels, 0.1 * plain.pixels);
    EXPECT_LT(half.columns, 0.1 * plain.columns);
    EXPECT_LT(full.pixels, 0.5 * plain.pixels);
    EXPECT_LT(full.columns, 0.2 * plain.columns);
}

TEST_F(CalibrationOnVirtualDetector, references_stand_in_their_files_as_a_text_stream_writes_them)
{
    open("Scene=flat\nLight=0\n");
    start();
    click("pushButton_cali");
    capture("pushButton_full_off", "Full Off Success");
    light(1);
    capture("pushButton_full_on", "Full On Success");
    stop();
    for (const auto &[file, reference] : {std::pair("data_fulloff.csv", &pipeline().fullOffData),
                                          std::pair("data_fullon.csv", &pipeline().fullOnData)}) {
        const QByteArray text = folder.read(QStringLiteral("Logs/calib/") + file);
        EXPECT_TRUE(text == expectedCsv(*reference)) << file;
        const QList<QByteArray> lines = text.split('\n');
        ASSERT_EQ(lines.size(), 1025) << "and nothing after the last line's end";
        EXPECT_EQ(lines.last(), "");
        EXPECT_TRUE(std::all_of(lines.begin(), lines.end() - 1,
                                [](const QByteArray &line) { return line.count(',') == 1023; }));
    }
}

TEST_F(CalibrationOnVirtualDetector, equal_references_are_black_and_reversed_ones_white)
{
    open({}, "DebugMode=true\n");
    startPattern("testImage4"); // half of full scale everywhere
    click("pushButton_cali");
    capture("pushButton_full_off", "Full Off Success");
    capture("pushButton_full_on", "Full On Success");
    waitForPictures(2);
    EXPECT_EQ(greys(), std::set<uchar>{0}) << "no span at all";
    stop();

    startPattern("testImage3"); // squares, dark first
    capture("pushButton_full_on", "Full On Success");
    waitForPictures(2);
    EXPECT_EQ(picture.constScanLine(0)[0], 0) << "below the dark reference";
    EXPECT_EQ(picture.constScanLine(0)[64], 255) << "at the bright reference";
    stop();

    startPattern("testImage4");
    waitForPictures(1);
    EXPECT_EQ(picture.constScanLine(0)[0], 255) << "the bright reference is below the dark one";
    EXPECT_EQ(picture.constScanLine(0)[64], 0) << "at the dark reference";
    stop();
}

TEST_F(CalibrationOnVirtualDetector, a_capture_abandoned_before_its_frame_leaves_no_file)
{
    open("Pacing=timing\n");
    start();
    waitForPictures(1);
    click("pushButton_cali");
    click("pushButton_full_off"); // the next frame is a good while away
    click("pushButton_full_off");
    waitForPictures(2);
    EXPECT_EQ(text("label_calistate"), "");
    EXPECT_FALSE(QFile::exists(folder.filePath("Logs/calib/data_fulloff.csv")));
    EXPECT_TRUE(std::ranges::all_of(pipeline().fullOffData, [](double value) { return value == 0.0; }));
    stop();
}
