// Whenever the program is killed, what stands under the name of a recorded file is whole. QV1K_KILLS says how
// often it is killed, QV1K_KILL_SEED when.

#include "tests/tools/acquirerun.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cstdio>

namespace {

class AcquireKilled : public Acquire
{
protected:
    [[nodiscard]] static QStringList arguments(const QString &place)
    {
        // The counter: each frame differs, and is the same in every run.
        return {QStringLiteral("--library"), QStringLiteral("virtual"),
                QStringLiteral("--output"),  place,
                QStringLiteral("--name"),    QStringLiteral("T"),
                QStringLiteral("--frames"),  QStringLiteral("4"),
                QStringLiteral("--data"),    QStringLiteral("--picture"),
                QStringLiteral("--video"),   QStringLiteral("--test-pattern"),
                QStringLiteral("5")};
    }

    [[nodiscard]] static QFileInfoList files(const QString &place)
    {
        return QDir(place + QStringLiteral("/T")).entryInfoList(QDir::Files);
    }

    [[nodiscard]] static qint64 bytes(const QString &place)
    {
        qint64 sum = 0;
        for (const QFileInfo &file : files(place))
            sum += file.size();
        return sum;
    }

    /// Kills a run when that much of it is written. False when it had ended before.
    bool killed(const QString &place, qint64 written)
    {
        QProcess process;
        process.start(QStringLiteral(QV1K_ACQUIRE), arguments(place));
        EXPECT_TRUE(process.waitForStarted()) << qPrintable(process.errorString());
        while (process.state() == QProcess::Running && bytes(place) < written)
            process.waitForReadyRead(0);
        if (process.state() == QProcess::Running)
            process.kill();
        EXPECT_TRUE(process.waitForFinished(60000));
        return process.exitStatus() == QProcess::CrashExit;
    }

    static QByteArray content(const QString &path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
        return file.readAll();
    }
};

} // namespace

TEST_F(AcquireKilled, at_any_moment_every_file_under_its_name_is_whole)
{
    const int kills =
        qEnvironmentVariableIntValue("QV1K_KILLS") > 0 ? qEnvironmentVariableIntValue("QV1K_KILLS") : 10;
    const auto seed = qEnvironmentVariableIsSet("QV1K_KILL_SEED")
                          ? static_cast<quint32>(qEnvironmentVariable("QV1K_KILL_SEED").toULong())
                          : QRandomGenerator::system()->generate();
    std::printf("seed %u\n", seed);
    QRandomGenerator random(seed);
    detector("");
    run(arguments(QStringLiteral("whole")));
    ASSERT_EQ(exitCode, 0) << qPrintable(errors);

    int ended = 0;
    int whole = 0;
    int parts = 0;
    for (int n = 0; n < kills; ++n) {
        const QString place = QStringLiteral("killed%1").arg(n);
        if (!killed(place, random.bounded(bytes(QStringLiteral("whole")))))
            ++ended;
        for (const QFileInfo &file : files(place)) {
            if (file.fileName().contains(QStringLiteral(".part"))) {
                ++parts;
                continue;
            }
            ++whole;
            EXPECT_TRUE(content(file.filePath()) == content(QStringLiteral("whole/T/") + file.fileName()))
                << qPrintable(file.filePath());
        }
        QDir(place).removeRecursively();
    }
    std::printf("%d runs killed, %d ended before; %d files whole, %d left as parts\n", kills - ended, ended,
                whole, parts);
    EXPECT_LT(ended, kills);
    EXPECT_GT(whole, 0) << "no file was there to be whole";
}
