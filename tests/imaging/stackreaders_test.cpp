// Recorded files as the system's tiffinfo and Python's numpy read them, the latter by the manual's own lines.

#include "imaging/processimage.h"
#include "tests/imaging/frames.h"
#include "tests/support/workingfolder.h"

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QProcess>
#include <QRegularExpression>
#include <QtEndian>

#include <bit>

namespace {

/// What a program prints, run in the folder of a recording.
QString printed(const QString &program, const QStringList &arguments, const QString &folder)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(-1)) << qPrintable(program + ": " + process.errorString());
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_EQ(process.readAllStandardError(), QByteArray());
    return QString::fromUtf8(process.readAllStandardOutput());
}

QString python(const QString &lines, const QString &folder)
{
    return printed("/usr/bin/python3", {"-W", "error", "-c", lines}, folder).trimmed();
}

/// The one block of Python of the manual that reads an array.
QString manualsLines()
{
    QFile manual(QStringLiteral(QV1K_SOURCE_TREE "/docs/manual.md"));
    EXPECT_TRUE(manual.open(QIODevice::ReadOnly));
    static const QRegularExpression block("```python\n((?:(?!```).)*NAME\\.npy.*?)```",
                                          QRegularExpression::DotMatchesEverythingOption);
    return block.match(QString::fromUtf8(manual.readAll())).captured(1);
}

/// Three frames, recorded under the manual's name.
class StackReaders : public testing::Test
{
protected:
    StackReaders()
    {
        pipeline.setLogPath(folder.path());
        pipeline.setTimeStamp("NAME");
        pipeline.setSaveFrameTotal(3);
        pipeline.startSaving({.tiff = true, .npy = true, .raw = true}, {.serial = "QV1K-7"});
        for (quint32 n = 1; n <= 3; ++n) {
            pipeline.onReadReady(Frames::useful(n));
            quint64 sum = 0;
            for (const double current : pipeline.lastFrame())
                sum += std::bit_cast<quint32>(static_cast<float>(current));
            bitSums << QString::number(sum);
        }
    }

    WorkingFolder folder;
    ProcessImage pipeline;
    QStringList bitSums; ///< of each frame's currents, rounded to 32 bits
    QString place = folder.filePath("NAME");
};

} // namespace

TEST_F(StackReaders, numpy_reads_the_array_by_the_manuals_lines)
{
    const QString lines = manualsLines();
    ASSERT_FALSE(lines.isEmpty());
    static const QRegularExpression told("^\\(3, 1024, 1024\\) (\\S+) nA \\d{4}-\\d\\d-\\d\\dT[0-9:.]+Z$");
    const QRegularExpressionMatch match = told.match(python(lines, place));
    ASSERT_TRUE(match.hasMatch());
    const QByteArray sums =
        "\nprint(*[int(frame.view('u4').sum(dtype='u8')) for frame in np.asarray(currents)])";
    EXPECT_EQ(python(lines + sums, place).section('\n', 1), bitSums.join(' ')) << "every bit of every value";
}

TEST_F(StackReaders, numpy_reads_the_raw_frames_and_python_confirms_their_checksums)
{
    const QString lines =
        "import json, pathlib, zlib, numpy as np\n"
        "told = json.loads(pathlib.Path('NAME.raw.json').read_bytes())\n"
        "raw = np.fromfile('NAME.raw', dtype='>u4').reshape(-1, 1024, 1024)\n"
        "print(*[zlib.crc32(raw[f['number'] - 1]) == int(f['crc32'], 16) for f in told['frames']])\n"
        "print(int(raw[2].sum(dtype='u8')))";
    const QByteArray third = Frames::useful(3);
    quint64 sum = 0;
    for (qsizetype at = 0; at < third.size(); at += 4)
        sum += qFromBigEndian<quint32>(third.constData() + at);
    EXPECT_EQ(python(lines, place), "True True True\n" + QString::number(sum));
}

TEST_F(StackReaders, tiffinfo_finds_a_page_of_floats_for_each_frame_and_what_is_told_of_it)
{
    const QString told = printed("tiffinfo", {"NAME.tif"}, place);
    for (const char *line :
         {"Image Width: 1024 Image Length: 1024", "Bits/Sample: 32", "Sample Format: IEEE floating point",
          "Compression Scheme: None", "Photometric Interpretation: min-is-black", "Rows/Strip: 1024"})
        EXPECT_EQ(told.count(line), 3) << line;
    static const QRegularExpression time("DateTime: \\d{4}:\\d\\d:\\d\\d \\d\\d:\\d\\d:\\d\\d\n");
    EXPECT_EQ(told.count(time), 3);
    static const QRegularExpression description("ImageDescription: (\\{.*\\})\n");
    QList<int> frames;
    for (auto matches = description.globalMatch(told); matches.hasNext();) {
        const QJsonDocument page = QJsonDocument::fromJson(matches.next().captured(1).toUtf8());
        EXPECT_EQ(page["unit"], "nA");
        EXPECT_EQ(page["detector"]["serial_number"].toString(), frames.isEmpty() ? "QV1K-7" : "");
        frames << page["frame"].toInt();
    }
    EXPECT_EQ(frames, (QList<int>{1, 2, 3}));
}
