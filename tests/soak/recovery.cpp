#include "tests/soak/recovery.h"

#include "device/d2xxlibrary.h"

#include <algorithm>

namespace {

using State = SoakWindow::State;

constexpr int attempts = 4;
const QByteArray marked = "HEAL";

/// Whether the virtual detector has read its settings, in which there is a detector of that number.
[[nodiscard]] bool isListed(const D2xxLibrary &library, const QByteArray &serialNumber)
{
    std::array<d2xx::DeviceRecord, 8> records{};
    quint32 count = 0;
    if (library.driver->createDeviceInfoList(&count) != d2xx::Status::Ok)
        return false;
    count = static_cast<quint32>(records.size());
    if (library.driver->getDeviceInfoList(records.data(), &count) != d2xx::Status::Ok)
        return false;
    return std::any_of(records.begin(), records.end(),
                       [&](const d2xx::DeviceRecord &record) { return serialNumber == record.serialNumber; });
}

[[nodiscard]] bool heal(SoakWindow &window)
{
    static int times = 0;
    const QByteArray marker = marked + QByteArray::number(++times);
    window.settle("[General]\nPacing=none\nSerialNumbers=QV1K," + marker + '\n');
    const D2xxLibrary library = D2xxLibrary::load(QStringLiteral(QV1K_SOAK_LIBRARY));
    return QTest::qWaitFor([&] { return isListed(library, marker); }, SoakWindow::patienceMs) &&
           QTest::qWaitFor([&] { return window.ports().contains(QStringLiteral("QV1K")); },
                           SoakWindow::patienceMs);
}

[[nodiscard]] bool disconnectIt(SoakWindow &window)
{
    const auto isEnding = [&window] {
        if (window.state() == State::Sampling)
            window.press("pushButton_sample");
        if (window.state() == State::Idle)
            window.press("pushButton_Connect");
        return window.state() == State::Disconnected;
    };
    return QTest::qWaitFor(isEnding, SoakWindow::patienceMs);
}

[[nodiscard]] bool connectIt(SoakWindow &window)
{
    const auto isConnecting = [&window] {
        auto *list = window.find<QComboBox>("comboBox_port");
        list->setCurrentIndex(std::max(0, list->findText(QStringLiteral("QV1K"))));
        if (window.state() == State::Disconnected)
            window.press("pushButton_Connect");
        return window.state() == State::Idle;
    };
    return QTest::qWaitFor(isConnecting, SoakWindow::patienceMs);
}

[[nodiscard]] bool playIt(SoakWindow &window)
{
    window.setCancelsWait(false);
    window.press("pushButton_sample");
    if (window.state() != State::Sampling || !window.waitForPictures(1))
        return false;
    window.press("pushButton_sample");
    return window.waitForState(State::Idle);
}

} // namespace

QString failsToWorkAgain(SoakWindow &window)
{
    QStringList failed;
    while (failed.size() < attempts) {
        if (!disconnectIt(window))
            failed << QStringLiteral("disconnecting");
        else if (!heal(window))
            failed << QStringLiteral("the list of ports");
        else if (!connectIt(window))
            failed << QStringLiteral("connecting");
        else if (!playIt(window))
            failed << QStringLiteral("a picture");
        else if (!disconnectIt(window))
            failed << QStringLiteral("disconnecting afterwards");
        else
            return {};
    }
    return failed.join(QStringLiteral(", "));
}

bool isMarker(const QString &serialNumber)
{
    return serialNumber.startsWith(QLatin1String(marked));
}
