#pragma once

#include "tests/support/patience.h"
#include "tests/support/virtualdetector.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

/// Runs qv1k-acquire in an empty working folder on the virtual detector.
class Acquire : public testing::Test
{
protected:
    /// Settings of the virtual detector, unpaced unless said otherwise.
    void detector(const QByteArray &settings) const { settleVirtualDetector(folder, settings); }

    void run(const QStringList &arguments)
    {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(program, arguments);
        ASSERT_TRUE(process.waitForFinished(120000 * patience)) << qPrintable(process.errorString());
        ASSERT_EQ(process.exitStatus(), QProcess::NormalExit);
        exitCode = process.exitCode();
        output = textOf(process.readAllStandardOutput());
        errors = textOf(process.readAllStandardError());
    }

    /// What a program wrote, whatever ends a line on this system.
    static QString textOf(const QByteArray &written)
    {
        return QString::fromUtf8(written).remove(QLatin1Char('\r'));
    }

    void runVirtual(const QStringList &arguments)
    {
        run(QStringList{QStringLiteral("--library"), QStringLiteral("virtual"), QStringLiteral("--output"),
                        QStringLiteral("out"), QStringLiteral("--name"), QStringLiteral("T")} +
            arguments);
    }

    /// The run failed with exactly one line on standard error, which holds this text.
    void expectFailure(const QString &text) const
    {
        EXPECT_EQ(exitCode, 1);
        EXPECT_EQ(errors.count(QLatin1Char('\n')), 1) << qPrintable(errors);
        EXPECT_TRUE(errors.startsWith(QStringLiteral("qv1k-acquire: "))) << qPrintable(errors);
        EXPECT_TRUE(errors.contains(text)) << qPrintable(errors);
    }

    /// Long enough for the first frames also on a busy machine; what is waited for comes after them.
    static constexpr int silenceSeconds = 5 * patience;
    const QStringList frameTimeout{QStringLiteral("--timeout"), QString::number(silenceSeconds)};

    /// The run ended by that, after so many frames.
    void expectSilenceAfter(int frames, int wanted) const
    {
        expectFailure(QStringLiteral("time-out: no frame for %1 s, %2 of %3 received")
                          .arg(silenceSeconds)
                          .arg(frames)
                          .arg(wanted));
    }

    /// What the run wrote to the log: one file, whatever day it is.
    [[nodiscard]] QString log() const
    {
        const QStringList logs = QDir(folder.filePath(QStringLiteral("Logs"))).entryList(QDir::Files);
        EXPECT_EQ(logs.size(), 1);
        return QString::fromUtf8(folder.read(QStringLiteral("Logs/") + logs.value(0)));
    }

    static constexpr const char *haltFrame = "ffaa03a10deb";
    WorkingFolder folder;
    QString program = QStringLiteral(QV1K_ACQUIRE);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    int exitCode = -1;
    QString output;
    QString errors;
};
