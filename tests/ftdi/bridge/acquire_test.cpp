#include "tests/ftdi/bridge/detectorlines.h"
#include "tests/ftdi/bridge/usbbed.h"
#include "tests/tools/acquirerun.h"

namespace {

/// qv1k-acquire in a process of its own on the same emulated USB.
class AcquireOnBridge : public Acquire
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(UsbBed::isAtHand()) << "start it by ctest, which loads umockdev's library first";
        environment = QProcessEnvironment::systemEnvironment(); // where the bed is
        detector("");
    }

    EmulatedBridge &plugIn(const UsbBed::Identity &identity = {}, int at = port)
    {
        simulator::Settings settings;
        settings.pacing = simulator::Pacing::None;
        return bed.plugIn(at, identity, std::make_unique<DetectorLines>(settings));
    }
    [[nodiscard]] static QStringList arguments(const char *frames)
    {
        return {QStringLiteral("--library"), QStringLiteral(QV1K_FTDI_LIBRARY), QStringLiteral("--output"),
                QStringLiteral("bridge"),    QStringLiteral("--name"),          QStringLiteral("T"),
                QStringLiteral("--frames"),  QString::fromLatin1(frames)};
    }

    static constexpr int port = 1;
    UsbBed bed;
};

} // namespace

TEST_F(AcquireOnBridge, what_a_bridge_brings_is_stored_as_what_the_virtual_library_brings)
{
    const QStringList form{QStringLiteral("--data"), QStringLiteral("--picture"),
                           QStringLiteral("--test-pattern"), QStringLiteral("5")};
    plugIn();
    run(arguments("3") + form);
    ASSERT_EQ(exitCode, 0) << qPrintable(errors);
    runVirtual(form + QStringList{QStringLiteral("--frames"), QStringLiteral("3")});
    ASSERT_EQ(exitCode, 0) << qPrintable(errors);

    const QStringList files = QDir(QStringLiteral("out/T")).entryList(QDir::Files);
    EXPECT_EQ(files.size(), 9);
    for (const QString &file : files) {
        const QByteArray expected = folder.read(QStringLiteral("out/T/") + file);
        EXPECT_FALSE(expected.isEmpty());
        EXPECT_TRUE(folder.read(QStringLiteral("bridge/T/") + file) == expected) << qPrintable(file);
    }
}

TEST_F(AcquireOnBridge, other_peoples_bridges_are_left_alone_unless_one_is_named)
{
    EmulatedBridge &bridge =
        plugIn({.serialNumber = "FT7A3B9C", .product = "serial cable", .productId = 0x6015});
    const auto wasOpened = [&] {
        return bridge.onChip([](EmulatedChip &chip) { return !chip.bitModes().empty(); });
    };
    run(arguments("1"));
    expectFailure(QStringLiteral("other bridges; --serial names one all the same: FT7A3B9C"));
    EXPECT_FALSE(wasOpened());

    run(arguments("1") + QStringList{QStringLiteral("--serial"), QStringLiteral("FT7A3B9C")});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    EXPECT_TRUE(wasOpened());
}

TEST_F(AcquireOnBridge, a_list_tells_other_peoples_bridges_and_does_not_try_whether_they_are_in_use)
{
    plugIn();
    EmulatedBridge &other =
        plugIn({.serialNumber = "FT7A3B9C", .product = "serial cable", .productId = 0x6015}, port + 1);
    run({"list", "--library", QV1K_FTDI_LIBRARY});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    QStringList lines = output.split(u'\n', Qt::SkipEmptyParts);
    lines.sort();
    EXPECT_EQ(lines, QStringList({"FT7A3B9C  serial cable (other bridge)", "QV1K  QV1K detector"}))
        << qPrintable(output);
    EXPECT_TRUE(other.onChip([](EmulatedChip &chip) { return chip.bitModes().empty(); }));
}

TEST_F(AcquireOnBridge, a_detector_that_another_program_holds_is_in_use_and_the_program_is_named)
{
    plugIn();
    QProcess holder;
    holder.start(QV1K_HOLDBRIDGE, {"/dev/bus/usb/001/002"});
    ASSERT_TRUE(holder.waitForReadyRead(60'000)) << "it does not hold the bridge";
    run({"list", "--library", QV1K_FTDI_LIBRARY});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    EXPECT_EQ(output, "QV1K  QV1K detector (in use)\n");
    run(arguments("1"));
    expectFailure("the detector QV1K cannot be opened; Another program holds the bridge ");
    expectFailure(QStringLiteral("holdbridge (process %1).").arg(holder.processId()));
    holder.closeWriteChannel();
    ASSERT_TRUE(holder.waitForFinished(60'000));
}

TEST_F(AcquireOnBridge, a_cable_that_is_pulled_ends_the_run_and_says_so)
{
    plugIn();
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments("1000000"));
    for (QByteArray printed; !printed.contains("frame "); printed += process.readAllStandardOutput())
        ASSERT_TRUE(process.waitForReadyRead(60'000)) << printed.constData();
    bed.unplug(port);
    ASSERT_TRUE(process.waitForFinished(60'000));
    exitCode = process.exitCode();
    errors = textOf(process.readAllStandardError());
    expectFailure(QStringLiteral("the detector was unplugged"));
    EXPECT_TRUE(log().contains(QStringLiteral("原因：The bridge was unplugged."))) << qPrintable(log());
}
