#include "tests/soak/actions.h"

#include "device/portmanager.h"
#include "tests/soak/faultchoice.h"
#include "tests/soak/recovery.h"
#include "ui/keepratiowidget.h"

#include <QCloseEvent>

#include <algorithm>
#include <array>

namespace {

constexpr int shortWaitMs = 2000;
constexpr int longWaitMs = 20000;

void connectOrDisconnect(SoakWindow &window, Chance &chance)
{
    auto *list = window.find<QComboBox>("comboBox_port");
    const int entry = chance.between(0, std::max(list->count() - 1, 0));
    if (chance.oneIn(4) && !isMarker(list->itemText(entry)))
        list->setCurrentIndex(entry);
    // A connection lasts for a few actions, or nothing would ever happen on it.
    if (window.state() == SoakWindow::State::Disconnected || chance.oneIn(4))
        window.press("pushButton_Connect");
}

void play(SoakWindow &window, Chance &chance)
{
    window.setCancelsWait(chance.oneIn(3));
    const bool stops = chance.oneIn(2);
    if (window.state() != SoakWindow::State::Sampling || stops)
        window.press("pushButton_sample");
}

/// As somebody does to whom nothing is fast enough.
void pressInAHurry(SoakWindow &window, Chance &chance)
{
    constexpr std::array buttons{"pushButton_sample", "pushButton_sample", "pushButton_Connect",
                                 "pushButton_set"};
    window.setCancelsWait(false);
    for (int i = 0; i < 3; ++i)
        window.press(chance.of(buttons));
}

void look(SoakWindow &window, Chance &chance)
{
    const int pictures = chance.between(1, 60);
    if (window.state() == SoakWindow::State::Sampling)
        static_cast<void>(window.waitForPictures(pictures, shortWaitMs));
}

/// While it works nobody touches it.
void watchForLong(SoakWindow &window, Chance &chance)
{
    const int pictures = chance.between(200, 1000);
    if (window.state() == SoakWindow::State::Sampling)
        static_cast<void>(window.waitForPictures(pictures, longWaitMs));
}

void changeDetector(SoakWindow &window, Chance &chance)
{
    const FaultChoice choice = FaultChoice::random(chance);
    window.settle(choice.settings, choice.faults);
}

void chooseRange(SoakWindow &window, Chance &chance)
{
    constexpr std::array ranges{"radioButton_150", "radioButton_50", "radioButton_10", "radioButton_1"};
    window.press(chance.of(ranges));
    if (chance.oneIn(2))
        window.press("pushButton_set");
}

void choosePattern(SoakWindow &window, Chance &chance)
{
    constexpr std::array patterns{"testImage1", "testImage2", "testImage3", "testImage4", "testImage5"};
    window.press(chance.of(patterns));
}

void record(SoakWindow &window, Chance &chance)
{
    const RecordingForms forms{chance.oneIn(4), chance.oneIn(2), chance.oneIn(2)};
    window.record(chance.between(1, 12), forms);
}

void calibrate(SoakWindow &window, Chance &chance)
{
    constexpr std::array buttons{"pushButton_cali", "pushButton_full_on", "pushButton_full_off"};
    window.press(chance.of(buttons));
}

void turnPicture(SoakWindow &window, Chance &chance)
{
    constexpr std::array buttons{"pushButton_rotate", "pushButton_mirrorHorizontal",
                                 "pushButton_mirrorVertical"};
    window.press(chance.of(buttons));
    window.find<QDoubleSpinBox>("doubleSpinBox_contrast")->setValue(chance.between(1, 1048576));
}

void clickPicture(SoakWindow &window, Chance &chance)
{
    auto *picture = window.find<KeepRatioWidget>("frame");
    QTest::mouseClick(picture, Qt::LeftButton, {},
                      {chance.between(0, picture->width() - 1), chance.between(0, picture->height() - 1)});
}

void turnPage(SoakWindow &window, Chance &chance)
{
    auto *list = window.find<QListWidget>("listWidget");
    list->setCurrentRow(chance.between(0, list->count() - 1));
}

void useEngineeringDialog(SoakWindow &window, Chance &chance)
{
    constexpr std::array buttons{"pushButton_set_adc",      "pushButton_set_mode",
                                 "pushButton_ver_readback", "pushButton_parm_readback",
                                 "pushButton_set_voltage",  "pushButton_cal_time",
                                 "pushButton_set_time",     "pushButton_eep_readback",
                                 "pushButton_send_eep",     "pushButton_read_eep"};
    window.pressInDialog({chance.of(buttons), chance.of(buttons)});
    window.press("pushButton_develop");
    window.pressInDialog({});
}

void lookAtVoltages(SoakWindow &window, Chance & /*chance*/)
{
    window.press("pushButton_voltinfo");
}

void askForBattery(SoakWindow &window, Chance & /*chance*/)
{
    if (window.state() == SoakWindow::State::Idle) // as the timer does
        window.window->check_lower_computer_status();
}

void resize(SoakWindow &window, Chance &chance)
{
    window.press(chance.oneIn(2) ? "pushButton_maxsize" : "pushButton_minimize");
    if (window.window->isMinimized())
        window.window->showNormal();
}

void closeByButton(SoakWindow &window, Chance & /*chance*/)
{
    window.press("pushButton_close");
}

/// The task bar, the end of a session.
void closeFromOutside(SoakWindow &window, Chance & /*chance*/)
{
    QCloseEvent event;
    QCoreApplication::sendEvent(window.window->windowHandle(), &event);
}

void reopen(SoakWindow &window, Chance & /*chance*/)
{
    window.reopen();
}

constexpr std::array actions{
    Action{"connect or disconnect", 10, &connectOrDisconnect},
    Action{"play or stop", 14, &play},
    Action{"press in a hurry", 4, &pressInAHurry},
    Action{"look", 20, &look},
    Action{"watch for long", 8, &watchForLong},
    Action{"another detector", 12, &changeDetector},
    Action{"range", 4, &chooseRange},
    Action{"test pattern", 3, &choosePattern},
    Action{"record", 7, &record},
    Action{"calibrate", 5, &calibrate},
    Action{"turn the picture", 3, &turnPicture},
    Action{"click the picture", 3, &clickPicture},
    Action{"turn the page", 2, &turnPage},
    Action{"engineering dialog", 2, &useEngineeringDialog},
    Action{"voltages", 1, &lookAtVoltages},
    Action{"battery", 1, &askForBattery},
    Action{"maximise or minimise", 1, &resize},
    Action{"close by the button", 1, &closeByButton},
    Action{"close from outside", 1, &closeFromOutside},
    Action{"reopen", 1, &reopen},
};

} // namespace

const Action &Action::random(Chance &chance)
{
    int total = 0;
    for (const Action &action : actions)
        total += action.weight;
    int left = chance.between(1, total);
    return *std::find_if(actions.begin(), actions.end(), [&left](const Action &action) {
        left -= action.weight;
        return left <= 0;
    });
}
