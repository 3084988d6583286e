#include "device/portmanager.h"
#include "imaging/pixelmath.h"
#include "simulator/testpatterns.h"
#include "virtualwindow.h"

#include <QDeadlineTimer>
#include <QRegularExpression>
#include <QThread>

#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <atomic>
#include <iostream>
#include <vector>

/// A recording that is slower than the detector: frames pile up before the pipeline, and never too many.
class BackPressureOnVirtualDetector : public MainWindowOnVirtualDetector
{
protected:
    /// As many frames wait, the one at work among them, when the next is held back; half of them when it is
    /// asked for again.
    static constexpr int limit = 64;
    static constexpr int half = limit / 2;
    static constexpr int frames = 1000;

    /// Counts what the receive thread hands on, and slows the pipeline so that 64 frames wait again as soon
    /// as half of them are through.
    void throttle()
    {
        QObject::connect(
            PortManager::instance(), &PortManager::read_ready, window.get(),
            [this] {
                const int waiting = ++handedOn - recorded;
                if (recorded < frames)
                    mostSeen = std::max(mostSeen.load(), waiting);
            },
            Qt::DirectConnection);
        QObject::connect(&pipeline(), &ProcessImage::saveMessage, window.get(), [this](int index) {
            ++signalsSeen;
            recorded = index;
            if (index % half == 1)
                waitUntilFull();
            if (index == 200)
                peakOfTheFirst = peakMiB();
        });
    }

    /// The writer that is stuck for a while, with the whole window.
    void waitUntilFull()
    {
        const QDeadlineTimer deadline(20000);
        const int behind = limit - 1;
        while (handedOn - recorded < behind && !deadline.hasExpired())
            QThread::yieldCurrentThread();
        EXPECT_EQ(handedOn - recorded, behind);
        ++timesFull;
    }

    /// The most memory that the process ever held, in MiB.
    static int peakMiB()
    {
        QFile status("/proc/self/status");
        EXPECT_TRUE(status.open(QIODevice::ReadOnly));
        static const QRegularExpression line("VmHWM:\\s+(\\d+) kB");
        return line.match(QString::fromLatin1(status.readAll())).captured(1).toInt() / 1024;
    }

    std::atomic<int> handedOn = 0;
    std::atomic<int> recorded = 0;
    std::atomic<int> mostSeen = 0;
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
        levels[size_t(count)] = uchar(std::min(current, 150.0) / 150 * 255);
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
    const int peak = peakMiB();
    EXPECT_EQ(text("label_savestate"), "Save Success");
    stop();

    EXPECT_EQ(timesFull, (frames + 31) / 32);
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
        ASSERT_TRUE(isCounterFrame(stored, levels, quint64(n) - 1)) << n;
    }
    EXPECT_FALSE(QFile::exists(folder.filePath("Logs/run/run_pic1001.png")));
}
