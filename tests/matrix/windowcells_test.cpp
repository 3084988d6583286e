#include "log/logmanager.h"
#include "tests/matrix/baddisk.h"
#include "tests/matrix/matrixwindow.h"

#include <QDir>

#include <algorithm>

#include <ostream>

namespace {

const QString armedMark = QStringLiteral("==== armed ====");
const QString overMark = QStringLiteral("==== over ====");
constexpr int lateByMs = 300;

void mark(const QString &text)
{
    LogManager::instance()->writeLog(text);
}

/// Where the operator is before it happens.
State before(Act act)
{
    switch (act) {
    case Act::Connect:
        return State::Disconnected;
    case Act::Watch:
    case Act::Stop:
    case Act::Record:
    case Act::Calibrate:
    case Act::DisconnectSampling:
    case Act::Leave:
    case Act::PullSampling:
    case Act::PlugInSampling:
    case Act::RemoveOtherSampling:
        return State::Sampling;
    default:
        return State::Idle;
    }
}

bool pulls(Act act)
{
    return act == Act::PullIdle || act == Act::PullSampling;
}

/// In these the fault is armed when everything is on its way.
bool armsItself(Act act)
{
    return act == Act::Record || act == Act::Calibrate || pulls(act);
}

} // namespace

void PrintTo(const Cell &cell, std::ostream *stream)
{
    *stream << cell.name();
}

class WindowMatrix : public MatrixWindow, public testing::WithParamInterface<Cell>
{
protected:
    /// Brings the window to where the operator does it, and arms the fault.
    void prepare(const Cell &cell)
    {
        open(cell.fault == Fault::UnplugBesideOther);
        const State state = before(cell.row.act);
        if (state != State::Disconnected) {
            ASSERT_NO_FATAL_FAILURE(connectDetector());
        }
        if (state == State::Sampling) {
            ASSERT_NO_FATAL_FAILURE(play());
        }
        mark(armedMark);
        boxes.startOver(cell.row.act == Act::Leave ? QMessageBox::Yes : QMessageBox::Ok);
        if (!armsItself(cell.row.act))
            arm(cell);
    }

    static void arm(const Cell &cell)
    {
        const bool isAtOnce = cell.fault == Fault::HeldElsewhere;
        LoadedLibrary::arm({.fault = cell.fault,
                            .command = isAtOnce ? std::uint16_t{0} : cell.row.command,
                            .imageBytes = cell.row.imageBytes,
                            .lateMs = cell.row.waitMs + lateByMs});
    }

    void act(const Cell &cell)
    {
        switch (cell.row.act) {
        case Act::Connect:
        case Act::Disconnect:
            return click("pushButton_Connect");
        case Act::Battery:
            return window->check_lower_computer_status();
        case Act::Download:
            return click("pushButton_set");
        case Act::Command:
            return press(cell.row.button);
        case Act::PlayPattern:
            click("testImage1");
            return click("pushButton_sample");
        case Act::Play:
            return click("pushButton_sample");
        case Act::Stop:
            return window->on_pushButton_sample_clicked(); // also where a dialog keeps the mouse away
        case Act::Leave:
            return click("pushButton_close");
        default:
            return actOnStream(cell);
        }
    }

    void actOnStream(const Cell &cell)
    {
        switch (cell.row.act) {
        case Act::Record:
            return record(cell);
        case Act::Calibrate:
            return calibrate(cell);
        case Act::DisconnectSampling:
            return beRefused(cell);
        case Act::PullIdle:
        case Act::PullSampling:
            return LoadedLibrary::arm({.fault = isDialog(cell.fault) ? Fault::Unplug : cell.fault});
        case Act::PlugIn:
        case Act::PlugInSampling:
            return report(true);
        case Act::RemoveOther:
        case Act::RemoveOtherSampling:
            return report(false);
        default:
            return watch(isOfTheWire(cell.fault));
        }
    }

    /// The window has taken note of it.
    void report(bool arrived)
    {
        LoadedLibrary::report(arrived);
        QCoreApplication::processEvents();
        if (isSampling())
            watch(false);
    }

    /// The fault happens while the box that refuses stands there.
    void beRefused(const Cell &cell)
    {
        // A device that is lost is given up when the box is answered.
        boxes.onBox = [this, target = pictures + 2, isAwaited = isOfTheWire(cell.fault)] {
            const auto isDone = [&] {
                return isAwaited ? LoadedLibrary::happened() > 0 : pictures >= target;
            };
            EXPECT_TRUE(QTest::qWaitFor(isDone, slackSeconds * 1000));
        };
        click("pushButton_Connect");
        watch(isOfTheWire(cell.fault));
    }

    void calibrate(const Cell &cell)
    {
        window->on_pushButton_cali_clicked();
        find<QPushButton>("pushButton_full_off")->click();
        arm(cell);
        watch(isOfTheWire(cell.fault));
    }

    void record(const Cell &cell)
    {
        QDir().mkdir(QStringLiteral("rec"));
        pipeline().setLogPath(folder.filePath(QStringLiteral("rec")));
        find<QLineEdit>("lineEdit_savename")->setText("T");
        find<QComboBox>("comboBox_saveframes")->setEditText(isOfTheDisk(cell.fault) ? "3" : "500");
        find<QCheckBox>("checkBox_picture")->setChecked(true);
        const BadDisk disk(cell.fault, QStringLiteral("rec"));
        window->on_pushButton_save_clicked();
        arm(cell);
        if (isOfTheDisk(cell.fault))
            EXPECT_TRUE(QTest::qWaitFor([this] { return !pipeline().isSaving(); }, slackSeconds * 1000));
        else
            watch(isOfTheWire(cell.fault));
    }

    /// Opens the engineering dialog, presses one of its buttons and closes it.
    void press(const char *name)
    {
        inDialog(Fault::EngineeringDialog,
                 [name](QDialog *dialog) { getChild<QPushButton>(*dialog, name)->click(); });
    }

    /// The cell's own steps, with what stands open meanwhile around them.
    void actAndWait(const Cell &cell)
    {
        const auto steps = [&](QDialog * /*dialog*/) {
            act(cell);
            const int limitMs = (cell.expected.seconds + slackSeconds) * 1000;
            EXPECT_TRUE(QTest::qWaitFor([&] { return is(cell.expected.state); }, limitMs));
            // What is told while the pictures go on comes some pictures later.
            const auto isLogged = [&] {
                return hasLogged(cell.expected.log);
            };
            EXPECT_TRUE(cell.expected.state != State::Sampling || QTest::qWaitFor(isLogged, limitMs));
        };
        if (isDialog(cell.fault))
            inDialog(cell.fault, steps);
        else
            steps(nullptr);
    }

    [[nodiscard]] bool hasLogged(std::uint32_t expected) const
    {
        const QString log = QString::fromUtf8(folder.read(logName())).section(armedMark, 1);
        return std::ranges::all_of(logTexts(), [&](const LogText &line) {
            return (expected & line.line) == 0U || log.contains(QString::fromUtf8(line.text));
        });
    }

    void expectLogged(const Expectation &expected)
    {
        const QString log = finalLog();
        const QString nextWindow = QStringLiteral("串口初始化"); // where the one before is gone
        const QString section =
            log.section(armedMark, 1, 1).section(overMark, 0, 0).section(nextWindow, 0, 0);
        for (const LogText &line : logTexts()) {
            const QString text = QString::fromUtf8(line.text); // the last lines stand there without a stamp
            if ((expected.perhaps & line.line) != 0U)
                continue;
            EXPECT_EQ(section.contains(text), (expected.log & line.line) != 0U)
                << line.text << ": " << line.meaning;
        }
        EXPECT_LE(section.count(QStringLiteral("设备连接丢失")), 1);
    }
};

TEST_P(WindowMatrix, stands)
{
    const Cell &cell = GetParam();
    const Expectation &expected = cell.expected;
    ASSERT_NO_FATAL_FAILURE(prepare(cell));
    watchReadiness(expected.boxes == waitCancelled);
    QElapsedTimer clock;
    clock.start();
    actAndWait(cell);
    EXPECT_EQ(LoadedLibrary::happened() > 0, isOfTheWire(cell.fault) || pulls(cell.row.act));
    EXPECT_EQ(shownTexts().toStdString(), expected.boxes);
    EXPECT_TRUE(expected.page.empty() || savePage().toStdString().starts_with(expected.page))
        << qPrintable(savePage());
    if (expected.state == State::Closed)
        window.reset(); // which takes its share of the time
    else
        mark(overMark);
    EXPECT_LT(clock.elapsed(), (expected.seconds + slackSeconds) * 1000);
    expectThatTheNextFlowWorks();
    expectLogged(expected);
}

// Where the waiting ones are left out goes by this name.
INSTANTIATE_TEST_SUITE_P(Prompt, WindowMatrix, testing::ValuesIn(windowCells(Pace::Prompt)));
INSTANTIATE_TEST_SUITE_P(Waiting, WindowMatrix, testing::ValuesIn(windowCells(Pace::Waiting)));
