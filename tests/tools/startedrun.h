#pragma once

#include "tests/tools/acquirerun.h"
#include "tests/tools/endrequest.h"

#include <QImage>
#include <QRegularExpression>
#include <QTest>

#include <csignal>

/// qv1k-acquire while it runs, and what it wrote to the virtual detector.
class StartedRun : public Acquire
{
protected:
    static constexpr const char *startFrame = "ffaa03a00deb";
    static constexpr const char *readinessQuery = "ffaa03aa0deb";

    /// Asks for more frames than will come.
    void start(const QStringList &arguments = {})
    {
        startCommand(QStringList{QStringLiteral("--output"), QStringLiteral("out"), QStringLiteral("--name"),
                                 QStringLiteral("T"), QStringLiteral("--frames"), QStringLiteral("100000")} +
                     arguments);
    }

    void startCommand(const QStringList &arguments)
    {
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(QV1K_ACQUIRE),
                      arguments +
                          QStringList{QStringLiteral("--library"), QStringLiteral(QV1K_NOTING_LIBRARY)});
        ASSERT_TRUE(process.waitForStarted()) << qPrintable(process.errorString());
    }

    /// Until that many frames were told on the standard output.
    void waitForFrames(int count)
    {
        const bool came = QTest::qWaitFor(
            [&] {
                output += textOf(process.readAllStandardOutput());
                return output.count(QStringLiteral("frame ")) >= count;
            },
            60000 * patience);
        ASSERT_TRUE(came) << qPrintable(output);
    }

    /// Until the detector was sent that frame.
    void waitForWritten(const char *frame)
    {
        ASSERT_TRUE(QTest::qWaitFor([&] { return written(frame) > 0; }, 60000 * patience));
    }

    void waitForEnd()
    {
        ASSERT_TRUE(process.waitForFinished(60000 * patience));
        output += textOf(process.readAllStandardOutput());
        errors = textOf(process.readAllStandardError());
        exitCode = process.exitCode();
    }

    void expectEndBy(const EndRequest &request)
    {
        EXPECT_TRUE(request.ended(process)) << exitCode << ' ' << qPrintable(errors);
    }

    /// Nobody read the output any more.
    void expectEndWithoutReader()
    {
#ifdef Q_OS_WIN
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(exitCode, 1) << qPrintable(errors);
#else
        EXPECT_EQ(process.exitStatus(), QProcess::CrashExit);
        EXPECT_EQ(exitCode, SIGPIPE) << qPrintable(errors);
#endif
    }

    /// How often the detector was sent that frame.
    [[nodiscard]] qsizetype written(const char *frame) const
    {
        return folder.read(QStringLiteral("written.txt")).count(QByteArray(frame) + '\n');
    }

    /// Each frame that is there is whole. Returns how many there are.
    [[nodiscard]] int wholePictures() const
    {
        const QStringList names = QDir(folder.filePath(QStringLiteral("out/T"))).entryList(QDir::Files);
        for (const QString &name : names) {
            EXPECT_EQ(QImage(folder.filePath(QStringLiteral("out/T/") + name)).size(), QSize(1024, 1024))
                << qPrintable(name);
        }
        return static_cast<int>(names.size());
    }

    /// The run closed the device and the log.
    void expectTidyLog() const
    {
        const QString text = log();
        EXPECT_TRUE(text.contains(QStringLiteral("串口关闭")));
        EXPECT_TRUE(text.endsWith(QStringLiteral("   >>   日志线程结束\n"))) << qPrintable(text);
    }

    void SetUp() override
    {
        EndRequest::prepare(process);
    }

    QProcess process;
};
