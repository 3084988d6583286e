// Measures how fast the virtual detector streams without pacing, through its C calls only.
// Usage: qv1k-stream-rate [--save FOLDER] ; FOLDER receives the first frame of each scene as raw bytes.

#include "simulator/bridge/d2xx_virtual.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <array>
#include <cstdio>
#include <vector>

namespace {

constexpr quint32 blockBytes = 131072;
constexpr int blocksPerFrame = 32;
constexpr int frames = 100;

struct Run
{
    const char *name;
    const char *scene;
    int patternCode; ///< 0: the scene
};

constexpr std::array runs{Run{"dark", "dark", 0},
                          Run{"flat", "flat", 0},
                          Run{"chart", "chart", 0},
                          Run{"phantom", "phantom", 0},
                          Run{"horizontal ramp", "dark", 0xC0},
                          Run{"vertical ramp", "dark", 0xC1},
                          Run{"checkerboard", "dark", 0xC2},
                          Run{"flat pattern", "dark", 0xC3},
                          Run{"counter", "dark", 0xCF}};

class Detector
{
public:
    Detector()
    {
        std::array<char, 5> serialNumber{"QV1K"};
        FT_OpenEx(serialNumber.data(), 1, &m_handle);
        FT_SetBitMode(m_handle, 0xFF, 0x40);
        FT_SetLatencyTimer(m_handle, 2);
        FT_SetTimeouts(m_handle, 1000, 1000);
    }
    ~Detector() { FT_Close(m_handle); }
    Q_DISABLE_COPY_MOVE(Detector)

    void command(int frameClass, int code)
    {
        std::array<uchar, 6> frame{0xFF, 0xAA, static_cast<uchar>(frameClass), static_cast<uchar>(code),
                                   0x0D, 0xEB};
        quint32 written = 0;
        FT_Write(m_handle, frame.data(), quint32{frame.size()}, &written);
    }

    quint32 read(uchar *buffer, quint32 length)
    {
        quint32 count = 0;
        FT_Read(m_handle, buffer, length, &count);
        return count;
    }

    bool exchange(int code)
    {
        std::array<uchar, 6> reply{};
        command(3, code);
        return read(reply.data(), quint32{reply.size()}) == reply.size();
    }

    bool readFrame(std::vector<uchar> &frame)
    {
        for (int block = 0; block < blocksPerFrame; ++block) {
            command(0, block);
            if (read(frame.data() + std::size_t{blockBytes} * static_cast<std::size_t>(block), blockBytes) !=
                blockBytes)
                return false;
        }
        return true;
    }

private:
    void *m_handle = nullptr;
};

void writeSettings(const Run &run)
{
    QFile file(QStringLiteral("virtual-detector.ini"));
    if (file.open(QIODevice::WriteOnly))
        file.write("Pacing=none\nScene=" + QByteArray(run.scene) + "\n;" + QByteArray(run.name) + "\n");
}

void save(const QString &folder, const Run &run, const std::vector<uchar> &frame)
{
    QFile file(folder + u'/' + QLatin1String(run.name) + QStringLiteral(".raw"));
    if (file.open(QIODevice::WriteOnly))
        file.write(reinterpret_cast<const char *>(frame.data()), static_cast<qint64>(frame.size()));
}

bool measure(const Run &run, const QString &folder)
{
    writeSettings(run);
    QElapsedTimer checked; // the library looks at its settings every 200 ms
    for (checked.start(); checked.elapsed() < 250;) {
        quint32 count = 0;
        FT_CreateDeviceInfoList(&count);
    }
    Detector detector;
    if ((run.patternCode != 0 && !detector.exchange(run.patternCode)) || !detector.exchange(0xA0))
        return false;
    std::vector<uchar> frame(std::size_t{blockBytes} * blocksPerFrame);
    QElapsedTimer timer;
    timer.start();
    if (!detector.readFrame(frame))
        return false;
    const double firstMs = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    if (!folder.isEmpty())
        save(folder, run, frame);
    timer.start();
    for (int i = 0; i < frames; ++i) {
        if (!detector.readFrame(frame))
            return false;
    }
    const double seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    const double megabytes = static_cast<double>(frame.size()) * frames / 1e6;
    std::printf("%-16s %8.0f MB/s   first frame %6.1f ms\n", run.name, megabytes / seconds, firstMs);
    return detector.exchange(0xA1);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const qsizetype option = arguments.indexOf(QStringLiteral("--save"));
    const QString folder = option > 0 ? QDir(arguments.value(option + 1)).absolutePath() : QString();
    const QTemporaryDir working;
    QDir::setCurrent(working.path());
    for (const Run &run : runs) {
        if (!measure(run, folder)) {
            std::fprintf(stderr, "%s: the stream broke off\n", run.name);
            return 1;
        }
    }
    return 0;
}
