#include "device/portmanager.h"
#include "imaging/pixelmath.h"
#include "simulator/sensor/testpatterns.h"
#include "tests/support/peakmemory.h"
#include "tests/ui/mainwindow/virtualwindow.h"

#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <iostream>
#include <mutex>
#include <vector>

/// A recording that is slower than the detector: frames pile up before the pipeline, and never too many.
class BackPressureOnVirtualDetector : public MainWindowOnVirtualDetector
{
protected:
    /// As many frames wait, the one at work among them, when the next is held back.
    static constexpr int limit = 64;
    /// As many frames go through between two stops of the writer: more than the half of them after which the
    /// next is asked for again.
    static constexpr int stride = 40;
    static constexpr int frames = 1000;

    /// Counts what the receive thread hands on, and stops the pipeline every few frames until 64 were
    /// waiting once more.
    void throttle()
    {
        QObject::connect(
            PortManager::instance(), &PortManager::read_ready, window.get(),
            [this] {
                const std::lock_guard lock(mutex);
                const int waiting = ++handedOn - recorded;
                if (recorded < frames)
                    mostSeen = std::max(mostSeen, waiting);
                wasFull |= waiting >= limit - 1; // the one at work may count as recorded
                changed.notify_one();
            },
            Qt::DirectConnection);
        QObject::connect(&pipeline(), &ProcessImage::saveMessage, window.get(), [this](int index) {
            ++signalsSeen;
            std::unique_lock lock(mutex);
            recorded = index;
            if (index % stride == 1)
                waitUntilFull(lock);
            if (handedOn - recorded <= limit / 2) // the next is asked for again when this one is through
                wasFull = false;
            if (index == 200)
                peakOfTheFirst = peakMemoryMiB();
        });
    }

    /// The writer that is stuck for a while, with the whole window.
    void waitUntilFull(std::unique_lock<std::mutex> &lock)
    {
        EXPECT_TRUE(changed.wait_for(lock, std::chrono::minutes(1), [this] { return wasFull; }));
        ++timesFull;
    }

    std::mutex mutex; ///< for what the receive thread looks at too, down to wasFull
    std::condition_variable changed;
    int handedOn = 0;
    int recorded = 0;
    int mostSeen = 0;
    bool wasFull = false; ///< since half of them were through
    int signalsSeen = 0;
    int timesFull = 0;
    int peakOfTheFirst = 0;
};

namespace {

/// Grey levels of the counter pattern by its count; frame k begins with count k x 4099.
std::vector<uchar> levelsByCount()
{
    std::vector<uchar> levels(simulator::fullScale);
    for (int count = 0; count < simulator::fullScale; ++count) {
        const double current = PixelMath::current(simulator::sampleOffset + count, 25, 166);
        levels[static_cast<std::size_t>(count)] = static_cast<uchar>(std::min(current, 150.0) / 150 * 255);
    }
    return levels;
}

/// Is it the picture of that frame of the counter pattern, pixel for pixel?
bool isCounterFrame(const cv::Mat &picture, const std::vector<uchar> &levels, quint64 frame)
{
    if (picture.size() != cv::Size(1024, 1024) || picture.type() != CV_8UC1 || !picture.isContinuous())
        return false;
    const auto first = simulator::counterSample(frame, 0) - simulator::sampleOffset;
    const auto untilWrap = levels.size() - first;
    return std::equal(levels.begin() + first, levels.end(), picture.data) &&
           std::equal(levels.begin(), levels.begin() + first, picture.data + untilWrap);
}

} // namespace

TEST_F(BackPressureOnVirtualDetector, a_thousand_frames_onto_a_slow_writer_are_all_there_and_memory_is_flat)
{
    open({}, "DebugMode=true\n");
    throttle();
    find<QLineEdit>("lineEdit_savename")->setText("run");
    find<QComboBox>("comboBox_saveframes")->setEditText(QString::number(frames));
    click("checkBox_picture");
    click("pushButton_save");
    click("testImage5"); // the counter pattern
    start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return signalsSeen == frames; }, 120000)) << signalsSeen;
    const int peak = peakMemoryMiB();
    EXPECT_EQ(text("label_savestate"), "Save Success");
    stop();

    EXPECT_EQ(timesFull, frames / stride);
    EXPECT_GE(mostSeen, limit - 1);
    EXPECT_LE(mostSeen, limit);
    std::cout << "peak memory " << peak << " MiB, " << peakOfTheFirst << " MiB after 200 frames, full "
              << timesFull << " times\n";
    RecordProperty("peak_mib", peak);
    // 64 frames of 4 MiB are 256 MiB; all of them would be 4000.
    EXPECT_LT(peak, 1000);
    EXPECT_LT(peak - peakOfTheFirst, 32);

    const std::vector<uchar> levels = levelsByCount();
    for (int n = 1; n <= frames; ++n) {
        const QString file = folder.filePath(QStringLiteral("Logs/run/run_pic%1.png").arg(n));
        const cv::Mat stored = cv::imread(file.toStdString(), cv::IMREAD_UNCHANGED);
        ASSERT_TRUE(isCounterFrame(stored, levels, static_cast<quint64>(n) - 1)) << n;
    }
    EXPECT_FALSE(QFile::exists(folder.filePath("Logs/run/run_pic1001.png")));
}
