#include "tests/matrix/cell.h"
#include "tests/tools/acquirerun.h"

#include <QElapsedTimer>

#include <ostream>

void PrintTo(const Cell &cell, std::ostream *stream)
{
    *stream << cell.name();
}

/// The real tool on the faulty library, which its environment arms.
class ToolMatrix : public Acquire, public testing::WithParamInterface<Cell>
{
protected:
    void arm(const Cell &cell)
    {
        environment.insert(QStringLiteral("QV1K_MATRIX_FAULT"), columnOf(cell.fault).name);
        environment.insert(QStringLiteral("QV1K_MATRIX_COMMAND"), QString::number(cell.row.command, 16));
        environment.insert(QStringLiteral("QV1K_MATRIX_IMAGE_BYTES"), QString::number(cell.row.imageBytes));
        environment.insert(QStringLiteral("QV1K_MATRIX_LATE_MS"),
                           QString::number(cell.row.waitMs + lateByMs));
    }

    void runOnce(const std::vector<const char *> &more)
    {
        QStringList arguments{QStringLiteral("--library"), QStringLiteral(QV1K_MATRIX_LIBRARY),
                              QStringLiteral("--output"),  QStringLiteral("out"),
                              QStringLiteral("--name"),    QStringLiteral("T"),
                              QStringLiteral("--frames"),  QStringLiteral("3")};
        for (const char *argument : more)
            arguments << QString::fromLatin1(argument);
        run(arguments);
    }

    void expectLogged(std::uint32_t expected)
    {
        const QString written = QDir(QStringLiteral("Logs")).exists() ? log() : QString();
        for (const LogText &line : logTexts())
            EXPECT_EQ(written.contains(QString::fromUtf8(line.text)), (expected & line.line) != 0U)
                << line.text << ": " << line.meaning;
    }

    /// What the folder of the recording is beforehand, where the fault meets the first look at it.
    void layFolder(const Cell &cell)
    {
        if (cell.row.command != 0)
            return;
        if (cell.fault == Fault::DiskGone)
            folder.write(QStringLiteral("out"), "a file stands where the folder should be");
        else if (isOfTheDisk(cell.fault))
            QDir().mkdir(QStringLiteral("out"));
    }

    void expectTold(const std::string &expected)
    {
        const QString told = errors.trimmed();
        const QString text = QString::fromStdString(expected);
        if (text.endsWith(QLatin1String(systemsWords)))
            EXPECT_TRUE(told.startsWith(text.chopped(3)) && told.size() > text.size()) << qPrintable(told);
        else
            EXPECT_EQ(told, text);
    }

    static constexpr int lateByMs = 300;
    static constexpr int slackSeconds = 60;
};

TEST_P(ToolMatrix, stands)
{
    const Cell &cell = GetParam();
    const Expectation &expected = cell.expected;
    detector(cell.fault == Fault::UnplugBesideOther ? "SerialNumbers=QV1K,SPARE\n" : "");
    const QProcessEnvironment healthy = environment;
    arm(cell);
    layFolder(cell);
    std::vector<const char *> arguments = cell.row.arguments;
    if (cell.fault == Fault::UnplugBesideOther)
        arguments.insert(arguments.end(), {"--serial", "QV1K"});

    QElapsedTimer clock;
    clock.start();
    ASSERT_NO_FATAL_FAILURE(runOnce(arguments));
    EXPECT_LT(clock.elapsed(), (expected.seconds + slackSeconds) * 1000);
    EXPECT_EQ(exitCode, expected.state == State::Succeeded ? 0 : 1) << qPrintable(errors);
    expectTold(expected.boxes);
    expectLogged(expected.log);

    QFile::remove(QStringLiteral("out")); // where it is a file
    environment = healthy;
    ASSERT_NO_FATAL_FAILURE(runOnce({"--serial", "QV1K"}));
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
}

// Where the waiting ones are left out goes by this name.
INSTANTIATE_TEST_SUITE_P(Prompt, ToolMatrix, testing::ValuesIn(toolCells(Pace::Prompt)));
INSTANTIATE_TEST_SUITE_P(Waiting, ToolMatrix, testing::ValuesIn(toolCells(Pace::Waiting)));
