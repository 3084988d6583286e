#include "tests/matrix/matrixwindow.h"

#include "log/logmanager.h"

#include <ostream>

namespace {

const QString armedMark = QStringLiteral("==== armed ====");
const QString overMark = QStringLiteral("==== over ====");

void mark(const QString &text)
{
    LogManager::instance()->writeLog(text);
}

} // namespace

void PrintTo(const Cell &cell, std::ostream *stream)
{
    *stream << cell.name();
}

class WindowMatrix : public MatrixWindow, public testing::WithParamInterface<Cell>
{
protected:
    /// Brings the window to where the operator does it.
    void prepare(const Cell &cell)
    {
        open(cell.fault == Fault::UnplugBesideOther);
        connectDetector();
        mark(armedMark);
        LoadedLibrary::arm(
            {.fault = cell.fault, .command = cell.row.command, .lateMs = cell.row.waitMs + lateByMs});
    }

    void act(const Row &row)
    {
        switch (row.act) {
        case Act::Download:
            return click("pushButton_set");
        case Act::Command:
            return press(row.button);
        }
    }

    /// Opens the engineering dialog, presses one of its buttons and closes it.
    void press(const char *name)
    {
        boxes.onDialog = [name, isPressed = false](QDialog *dialog) mutable {
            if (isPressed)
                return; // the press handles events
            isPressed = true;
            getChild<QPushButton>(*dialog, name)->click();
            dialog->reject();
        };
        click("pushButton_develop");
    }

    void expectLogged(std::uint32_t expected)
    {
        const QString log = finalLog();
        const QString section = log.section(armedMark, 1, 1).section(overMark, 0, 0);
        for (const LogText &line : logTexts()) {
            const QString text = QString::fromUtf8(line.text); // the last lines stand there without a stamp
            EXPECT_EQ(section.contains(text), (expected & line.line) != 0U)
                << line.text << ": " << line.meaning;
        }
        EXPECT_LE(section.count(QStringLiteral("设备连接丢失")), 1);
    }

    static constexpr int lateByMs = 300;
};

TEST_P(WindowMatrix, stands)
{
    const Cell &cell = GetParam();
    const Expectation &expected = cell.expected;
    prepare(cell);
    if (HasFatalFailure())
        return;
    boxes.startOver();
    QElapsedTimer clock;
    clock.start();
    act(cell.row);
    const int limitMs = (expected.seconds + slackSeconds) * 1000;
    EXPECT_TRUE(QTest::qWaitFor([&] { return is(expected.state); }, limitMs));
    EXPECT_LT(clock.elapsed(), limitMs);
    EXPECT_EQ(LoadedLibrary::happened() > 0, cell.fault != Fault::None);
    EXPECT_EQ(boxTexts().toStdString(), expected.boxes);
    mark(overMark);
    expectThatTheNextFlowWorks();
    expectLogged(expected.log);
}

INSTANTIATE_TEST_SUITE_P(Matrix, WindowMatrix, testing::ValuesIn(allCells()));
