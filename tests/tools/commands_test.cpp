#include "device/parameters/parameterdownload.h"
#include "device/protocol/currentrange.h"
#include "device/protocol/parameterpackets.h"
#include "device/protocol/timing.h"
#include "tests/tools/commandrun.h"

#include <QJsonArray>

TEST_F(Acquire, the_first_command_is_what_is_meant_without_one)
{
    detector("");
    const QStringList options{QStringLiteral("--library"), QStringLiteral("virtual"),
                              QStringLiteral("--name"),    QStringLiteral("T"),
                              QStringLiteral("--pattern"), QStringLiteral("2"),
                              QStringLiteral("--output")};
    run(options + QStringList{QStringLiteral("without")});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    run(QStringList{QStringLiteral("acquire")} + options + QStringList{QStringLiteral("with")});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    const QByteArray picture = folder.read(QStringLiteral("without/T/T_pic1.png"));
    EXPECT_FALSE(picture.isEmpty());
    EXPECT_EQ(picture, folder.read(QStringLiteral("with/T/T_pic1.png")));
}

TEST_F(Acquire, what_is_wrong_with_an_argument_is_told_by_its_name)
{
    const QList<std::pair<QStringList, const char *>> wrong{
        {{QStringLiteral("--frames")}, "Missing value after '--frames'."},
        {{QStringLiteral("--data=1")}, "Unexpected value after '--data'."},
        {{QStringLiteral("--this"), QStringLiteral("--that")}, "Unknown options: this, that."},
        {{QStringLiteral("-x")}, "Unknown option 'x'."},
        {{QStringLiteral("-")}, "unexpected argument \"-\""},
        {{QStringLiteral("calibrate"), QStringLiteral("--to=x")}, "calibrate needs dark or bright"},
        {{QStringLiteral("--frames=")}, "--frames takes a whole number from 1 to 1000000, not \"\""},
        {{QStringLiteral("--"), QStringLiteral("--help")}, "unexpected argument \"--help\""}};
    for (const auto &[arguments, text] : wrong) {
        run(arguments);
        EXPECT_EQ(exitCode, 2);
        EXPECT_EQ(errors,
                  QStringLiteral("qv1k-acquire: %1 (--help lists the options)\n").arg(QLatin1String(text)));
    }
    EXPECT_FALSE(QDir(folder.path()).exists(QStringLiteral("Logs"))) << "nothing was opened";
}

TEST_F(Acquire, what_stands_behind_an_option_is_its_value_whatever_it_looks_like)
{
    detector("");
    runVirtual({QStringLiteral("--name"), QStringLiteral("--data=1")});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    EXPECT_EQ(QDir(QStringLiteral("out/--data=1")).entryList(QDir::Files),
              QStringList(QStringLiteral("--data=1_pic1.png")));
}

TEST_F(Acquire, the_last_of_several_values_counts)
{
    run({QStringLiteral("--frames"), QStringLiteral("3"), QStringLiteral("--frames=0")});
    EXPECT_EQ(exitCode, 2);
    EXPECT_TRUE(errors.contains(QStringLiteral("not \"0\""))) << qPrintable(errors);
}

TEST_F(Acquire, each_command_explains_itself_without_a_detector)
{
    for (const char *name : {"acquire", "calibrate", "list", "info", "replay", "set"}) {
        run({QString::fromLatin1(name), QStringLiteral("--help")});
        EXPECT_EQ(exitCode, 0);
        EXPECT_TRUE(output.startsWith(QStringLiteral("Usage: qv1k-acquire %1 ").arg(QLatin1String(name))));
        EXPECT_TRUE(output.contains(QStringLiteral("Exit status:")));
        EXPECT_TRUE(output.contains(QStringLiteral("Keys of --json:")));
        EXPECT_TRUE(output.contains(QStringLiteral("Example:\n  qv1k-acquire ")));
    }
}

TEST_F(Acquire, help_and_version_are_given_whatever_else_stands_there)
{
    run({"--help"});
    const QString help = output;
    const QList<QStringList> others{{"stray", "--help-all"}, {"stray", "-h"}, {"--frames", "many", "-?"}};
    for (const QStringList &arguments : others) {
        run(arguments);
        EXPECT_EQ(exitCode, 0) << qPrintable(errors);
        EXPECT_EQ(output, help) << qPrintable(arguments.join(u' '));
    }
    run({"stray", "--version"});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    EXPECT_TRUE(output.startsWith("qv1k-acquire ")) << qPrintable(output);
}

TEST_F(Commands, list_tells_number_description_and_what_is_in_use)
{
    detector("SerialNumbers=QV1,QV2\n[Faults]\nFailOpens=1\n");
    run({QStringLiteral("list"), QStringLiteral("--library"), QStringLiteral("virtual"), json});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    const QJsonArray detectors = summary()[u"detectors"].toArray();
    ASSERT_EQ(detectors.size(), 2);
    const QJsonObject first{{QStringLiteral("serial"), QStringLiteral("QV1")},
                            {QStringLiteral("description"), QStringLiteral("QV1K virtual detector")},
                            {QStringLiteral("detector"), true},
                            {QStringLiteral("simulated"), true},
                            {QStringLiteral("inUse"), true}};
    EXPECT_EQ(detectors[0].toObject(), first);
    EXPECT_EQ(detectors[1].toObject()[u"serial"].toString(), QStringLiteral("QV2"));
    EXPECT_FALSE(detectors[1].toObject()[u"inUse"].toBool(true));

    run({QStringLiteral("list"), QStringLiteral("--library"), QStringLiteral("virtual")});
    EXPECT_EQ(output, QStringLiteral("QV1  QV1K virtual detector (simulated) (in use)\n"
                                     "QV2  QV1K virtual detector (simulated)\n"));
}

TEST_F(Commands, list_of_nothing_is_empty_and_ends_well)
{
    detector("Attached=false\n");
    command(QStringLiteral("list"), {json});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    EXPECT_TRUE(summary()[u"detectors"].isArray());
    EXPECT_EQ(summary()[u"detectors"].toArray().size(), 0);
}

TEST_F(Commands, what_the_list_says_is_open_is_in_use)
{
    detector("");
    environment.insert("QV1K_LISTED_OPEN", "1");
    command("list", {json});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    EXPECT_TRUE(summary()["detectors"][0]["inUse"].toBool()) << qPrintable(output);
}

TEST_F(Commands, without_a_driver_library_each_ends_and_makes_nothing)
{
    const QList<QStringList> each{
        {"list"}, {"info"}, {"set", "--range", "50"}, {"calibrate", "dark", "--to", "made/d.csv"}};
    for (const QStringList &arguments : each) {
        run(arguments + QStringList{"--library", "/nowhere/none.so"});
        expectFailure("no driver library: ");
    }
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
}

TEST_F(Commands, without_a_list_of_what_is_attached_each_ends)
{
    environment.insert(QStringLiteral("QV1K_NO_LIST"), QStringLiteral("1"));
    command(QStringLiteral("list"), {json});
    expectFailure(QStringLiteral("what is attached cannot be listed"));
    EXPECT_EQ(summary()[u"complete"], false);
    const QString none = QStringLiteral("no detector found");
    command(QStringLiteral("info"));
    expectFailure(none);
    command(QStringLiteral("set"), {QStringLiteral("--range"), QStringLiteral("50")});
    expectFailure(none);
    command(QStringLiteral("calibrate"),
            {QStringLiteral("dark"), QStringLiteral("--to"), QStringLiteral("d.csv")});
    expectFailure(none);
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("d.csv"))));
}

TEST_F(Commands, info_reads_back_what_the_detector_tells_of_itself)
{
    detector("BatteryLevel=42\n");
    command(QStringLiteral("info"), {json});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    const QJsonObject facts = summary();
    EXPECT_TRUE(facts[u"complete"].toBool());
    EXPECT_EQ(facts[u"serial"].toString(), QStringLiteral("QV1K"));
    EXPECT_EQ(facts[u"battery"].toInt(), 42);
    EXPECT_EQ(facts[u"version"].toString().count(u'.'), 4);
    EXPECT_EQ(facts[u"mode"].toString(), QStringLiteral("QV 1K"));
    EXPECT_EQ(facts[u"adc"].toObject()[u"picocoulombs"].toInt(), 25);
    EXPECT_EQ(facts[u"voltages"].toArray().size(), 16);
    EXPECT_EQ(facts[u"timing"].toArray().size(), 18);
    EXPECT_EQ(facts[u"eeprom"].toArray().size(), 32);
    EXPECT_EQ(facts[u"voff"], facts[u"voltages"].toArray()[7]);
    EXPECT_TRUE(log().contains(QStringLiteral("串口关闭")));
}

TEST_F(Commands, info_fails_with_the_first_question_that_is_not_answered)
{
    detector("[Faults]\nFailOpens=1\n");
    command(QStringLiteral("info"), {json});
    expectFailure(QStringLiteral("the detector QV1K cannot be opened; another program may hold it"));
    EXPECT_FALSE(summary()[u"complete"].toBool(true));
    EXPECT_EQ(QStringLiteral("qv1k-acquire: %1\n").arg(summary()[u"problem"].toString()), errors);

    detector("[Faults]\nReplyFaultCommand=0210\nMissingReply=true\n"); // 0.5 s of waiting
    command(QStringLiteral("info"));
    expectFailure(QStringLiteral("time-out: the detector did not tell its battery charge"));
}

TEST_F(Commands, info_tells_what_came_before_a_reply_that_is_too_short)
{
    detector("[Faults]\nReplyFaultCommand=0200\nShortReply=1\n"); // 5 s of waiting
    command("info", {json});
    expectFailure("time-out: the detector did not tell its parameters");
    EXPECT_TRUE(summary().contains("battery"));
    EXPECT_FALSE(summary().contains("eeprom"));

    detector("[Faults]\nReplyFaultCommand=02EE\nShortReply=1\n");
    command("info", {json});
    expectFailure("time-out: the detector did not tell its EEPROM");
    EXPECT_TRUE(summary().contains("mode"));
    EXPECT_FALSE(summary().contains("eeprom"));
}

TEST_F(Commands, info_tells_the_mode_that_the_detector_was_set_to)
{
    detector("");
    environment.insert("QV1K_FIRST_FRAME", ParameterPacket::setMode(false).toHex());
    command("info", {json});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    EXPECT_EQ(summary()["mode"].toString(), "QV 256");
}

TEST_F(Commands, a_detector_that_was_left_streaming_is_halted_and_asked_once_more)
{
    const auto halts = [&] {
        return written().count(haltFrame);
    };
    detector("[Faults]\nMissingReply=true\nReplyFaultCount=1\n");
    command(QStringLiteral("info"));
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    EXPECT_EQ(halts(), 1);

    detector("[Faults]\nMissingReply=true\nReplyFaultCount=1\n");
    command(QStringLiteral("set"), {QStringLiteral("--range"), QStringLiteral("50")});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    EXPECT_EQ(halts(), 2) << "one more";
}

TEST_F(Commands, set_sends_timing_adc_and_voltages_as_the_settings_page_does)
{
    detector("");
    folder.write(QStringLiteral("config.ini"), "[General]\ncomboBox_ope=2\nlineEdit_1=1.5\n");
    command(QStringLiteral("set"), QStringList{QStringLiteral("--range"), QStringLiteral("10")} + fourVolts);
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    EXPECT_TRUE(output.endsWith(QStringLiteral("set success\n"))) << qPrintable(output);
    const CurrentRange::Gear &gear = CurrentRange::gears[2];
    const AdcSelection adc{.operation = AdcSelection::Operation::Sum, .pcRange = gear.pcRange};
    QList<int> codes(ParameterPacket::voltageCount, ParameterPacket::voltageCode(0.0));
    codes[0] = ParameterPacket::voltageCode(1.5);
    codes[6] = ParameterPacket::voltageCode(15.0);
    codes[7] = ParameterPacket::voltageCode(-14.5);
    codes[14] = ParameterPacket::voltageCode(0.75);
    codes[15] = ParameterPacket::voltageCode(-10.0);
    const QList<QByteArray> wanted{
        ParameterPacket::setTiming(Timing::ofRange(gear.integrationTime).toWire()).toHex(),
        ParameterPacket::setAdc(adc).toHex(), ParameterPacket::setVoltages(codes).toHex()};
    EXPECT_EQ(written(), wanted);
    EXPECT_EQ(folder.read(QStringLiteral("config.ini")),
              QByteArray("[General]\ncomboBox_ope=2\nlineEdit_1=1.5\n"));
}

TEST_F(Commands, set_sends_nothing_that_is_not_asked_for)
{
    detector("");
    command(QStringLiteral("set"), fourVolts + QStringList{json});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    EXPECT_EQ(written().size(), 1);
    EXPECT_EQ(summary()[u"set"].toArray(), QJsonArray({QStringLiteral("voltages")}));
    EXPECT_FALSE(folder.read(QStringLiteral("written.txt")).isEmpty());
}

TEST_F(Commands, set_ends_with_what_is_not_acknowledged)
{
    detector("[Faults]\nReplyFaultCommand=0101\nCorruptReply=true\n");
    command(QStringLiteral("set"), {QStringLiteral("--range"), QStringLiteral("1"), json});
    expectFailure(QStringLiteral("set adc fail"));
    EXPECT_EQ(summary()[u"set"].toArray(), QJsonArray({QStringLiteral("timing")}));
}

TEST_F(Commands, set_sends_no_voltages_behind_an_adc_word_that_is_not_acknowledged)
{
    detector("[Faults]\nReplyFaultCommand=0101\nCorruptReply=true\n");
    command("set", QStringList{"--range", "1", json} + fourVolts);
    expectFailure("set adc fail");
    EXPECT_EQ(written().size(), 2);
    EXPECT_EQ(summary()["set"].toArray(), QJsonArray({"timing"}));
}

TEST_F(Commands, wrong_values_are_refused_before_anything_is_opened)
{
    command(QStringLiteral("set"));
    expectRefusal(QStringLiteral("set needs --range, or all four voltages"));
    command(QStringLiteral("set"), {QStringLiteral("--range"), QStringLiteral("100")});
    expectRefusal(QStringLiteral("--range takes 150, 50, 10 or 1, not \"100\""));
    command(QStringLiteral("set"), {QStringLiteral("--vss"), QStringLiteral("1")});
    expectRefusal(QStringLiteral("--von, --voff, --vss and --vcom go together"));
    for (const char *volts : {"15.01", "0.125", "nan", "x"}) {
        command(QStringLiteral("set"), {QStringLiteral("--vss"), QString::fromLatin1(volts)});
        expectRefusal(QStringLiteral("--vss takes volts from -15 to 15 with 2 decimals at most, not \"%1\"")
                          .arg(QLatin1String(volts)));
    }
    command(QStringLiteral("acquire"), {QStringLiteral("--frames"), QStringLiteral("1"),
                                        QStringLiteral("--seconds"), QStringLiteral("1")});
    expectRefusal(QStringLiteral("--frames and --seconds exclude each other"));
    command(QStringLiteral("list"), {QStringLiteral("--frames"), QStringLiteral("1")});
    expectRefusal(QStringLiteral("Unknown option 'frames'."));
}

TEST_F(Commands, json_sums_a_run_up_in_one_object)
{
    detector("");
    command(QStringLiteral("acquire"), {QStringLiteral("--frames"), QStringLiteral("2"), json,
                                        QStringLiteral("--name"), QStringLiteral("T")});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    const QJsonObject told = summary();
    EXPECT_EQ(told[u"frames"].toInt(), 2);
    EXPECT_EQ(told[u"wanted"].toInt(), 2);
    EXPECT_GT(told[u"framesPerSecond"].toDouble(), 0.0);
    EXPECT_EQ(told[u"folder"].toString(), QDir::current().absoluteFilePath(QStringLiteral("T")));
    EXPECT_EQ(told[u"failedFiles"].toInt(), 0);
    EXPECT_TRUE(told[u"complete"].toBool());
    EXPECT_FALSE(told.contains(u"problem"));
}

TEST_F(Commands, json_tells_of_a_run_that_was_cut_short)
{
    detector("[Faults]\nUnplugAtByte=5000000\n");
    command(QStringLiteral("acquire"), {QStringLiteral("--frames"), QStringLiteral("5"), json});
    expectFailure(QStringLiteral("the detector was unplugged, 1 of 5 received"));
    EXPECT_EQ(summary()[u"frames"].toInt(), 1);
    EXPECT_EQ(summary()[u"problem"].toString(),
              QStringLiteral("the detector was unplugged, 1 of 5 received"));
}

TEST_F(Commands, frames_of_so_many_seconds_that_are_cut_short_are_counted_without_how_many_should_have_come)
{
    detector("[Faults]\nUnplugAtByte=5000000\n");
    command("acquire", {"--seconds", "1000", json});
    expectFailure("the detector was unplugged, 1 received");
    EXPECT_EQ(summary()["frames"].toInt(), 1);
    EXPECT_FALSE(summary().contains("wanted"));
}

TEST_F(Commands, frames_of_so_many_seconds_are_a_whole_recording)
{
    detector("");
    command(QStringLiteral("acquire"), {QStringLiteral("--seconds"), QStringLiteral("1"), json,
                                        QStringLiteral("--name"), QStringLiteral("T")});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    const QJsonObject told = summary();
    EXPECT_GE(told[u"seconds"].toDouble(), 1.0);
    EXPECT_EQ(QDir(QStringLiteral("T")).entryList(QDir::Files).size(), told[u"frames"].toInt());
    EXPECT_TRUE(log().contains(QStringLiteral("保存完成"))) << qPrintable(log());
}
