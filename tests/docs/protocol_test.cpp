// docs/protocol.md against the functions that the program uses: every example, and every frame an example.

#include "device/parameters/adclists.h"
#include "device/protocol/commandframes.h"
#include "device/protocol/currentrange.h"
#include "device/protocol/parameterpackets.h"
#include "device/protocol/readback.h"
#include "device/protocol/timing.h"
#include "imaging/pixelmath.h"
#include "tests/docs/document.h"

#include <gtest/gtest.h>

#include <QMap>
#include <QSet>
#include <QtEndian>

#include <functional>

namespace {

const QString document = QStringLiteral("docs/protocol.md");

template <typename Value, std::size_t count>
Value entry(const std::array<AdcLists::Entry<Value>, count> &list, const QString &text)
{
    for (const auto &entry : list) {
        if (text == QLatin1String(entry.text))
            return entry.value;
    }
    ADD_FAILURE() << "not in the list: " << qPrintable(text);
    return {};
}

template <typename Value, std::size_t count>
QString text(const std::array<AdcLists::Entry<Value>, count> &list, Value value)
{
    return QStringLiteral("\"%1\"").arg(
        QLatin1String(list[static_cast<std::size_t>(AdcLists::indexOf(list, value))].text));
}

QByteArray adcFrame(const QStringList &arguments)
{
    if (arguments.size() != 4)
        return {};
    return ParameterPacket::setAdc({.operation = entry(AdcLists::operations, arguments[0]),
                                    .dataFormat = entry(AdcLists::dataFormats, arguments[1]),
                                    .testMode = entry(AdcLists::testModes, arguments[2]),
                                    .pcRange = entry(AdcLists::pcRanges, arguments[3])});
}

QByteArray voltagesFrame(const QStringList &arguments)
{
    QList<int> codes;
    for (const QString &volts : arguments)
        codes << ParameterPacket::voltageCode(volts.toDouble());
    return ParameterPacket::setVoltages(codes);
}

QByteArray timingFrame(const QStringList &arguments)
{
    for (const CurrentRange::Gear &gear : CurrentRange::gears) {
        if (arguments.value(1).toInt() == gear.nanoamperes)
            return ParameterPacket::setTiming(Timing::ofRange(gear.integrationTime).toWire());
    }
    return {};
}

QByteArray timingWordsFrame(const QStringList &arguments)
{
    QList<qint32> words;
    for (const QString &word : arguments)
        words << word.toInt();
    return ParameterPacket::setTiming(words);
}

QByteArray eepromFrame(const QStringList &arguments)
{
    QList<quint32> words;
    for (const QString &word : arguments)
        words << word.toUInt();
    return ParameterPacket::sendEeprom(words);
}

using Builder = std::function<QByteArray(const QStringList &)>;

template <QByteArray (*frame)()>
QByteArray fixed(const QStringList & /*arguments*/)
{
    return frame();
}

/// Every frame that the program can send, by the document's name for it.
const QMap<QString, Builder> &builders()
{
    using namespace CommandFrame;
    static const QMap<QString, Builder> all{{QStringLiteral("start"), fixed<startAcquisition>},
                                            {QStringLiteral("halt"), fixed<haltAcquisition>},
                                            {QStringLiteral("ready?"), fixed<readinessQuery>},
                                            {QStringLiteral("level?"), fixed<levelQuery>},
                                            {QStringLiteral("version?"), fixed<versionReadback>},
                                            {QStringLiteral("parameters?"), fixed<parameterReadback>},
                                            {QStringLiteral("eeprom?"), fixed<eepromReadback>},
                                            {QStringLiteral("eeprom-write"), fixed<eepromWrite>},
                                            {QStringLiteral("eeprom-read"), fixed<eepromRead>},
                                            {QStringLiteral("eeprom-initialise"), fixed<eepromInit>},
                                            {QStringLiteral("pattern"),
                                             [](const auto &a) {
                                                 return testPattern(a.value(0).toInt());
                                             }},
                                            {QStringLiteral("block"),
                                             [](const auto &a) {
                                                 return blockRequest(a.value(0).toInt());
                                             }},
                                            {QStringLiteral("mode"),
                                             [](const auto &a) {
                                                 return ParameterPacket::setMode(a.value(0) ==
                                                                                 QLatin1String("1k"));
                                             }},
                                            {QStringLiteral("adc"), adcFrame},
                                            {QStringLiteral("voltages"), voltagesFrame},
                                            {QStringLiteral("timing"), timingFrame},
                                            {QStringLiteral("timing-words"), timingWordsFrame},
                                            {QStringLiteral("eeprom"), eepromFrame}};
    return all;
}

QString meaningOfParameters(const QByteArray &reply)
{
    const auto read = Readback::parameters(reply);
    if (!read)
        return QStringLiteral("refused");
    QStringList words{
        read->mode == 0 ? QStringLiteral("1k") : QStringLiteral("256"),
        text(AdcLists::operations, read->adc.operation), text(AdcLists::dataFormats, read->adc.dataFormat),
        text(AdcLists::testModes, read->adc.testMode), text(AdcLists::pcRanges, read->adc.pcRange)};
    words << QString::number(ParameterPacket::voltageValue(read->voltageCodes.first()), 'f', 3);
    for (const std::size_t i : {0U, 15U, 16U, 17U})
        words << QString::number(
            Timing::fromWire(Timing::fields[i], read->timingWords[static_cast<qsizetype>(i)]));
    return words.join(u' ');
}

QString meaningOfEeprom(const QByteArray &reply)
{
    const auto words = Readback::eeprom(reply);
    return words ? QStringLiteral("%1 %2").arg(words->first()).arg(words->last()) : QStringLiteral("refused");
}

QString yesOrNo(bool is)
{
    return is ? QStringLiteral("yes") : QStringLiteral("no");
}

using Judge = std::function<QString(const QByteArray &)>;

/// Every way in which the program reads a reply.
const QMap<QString, Judge> &judges()
{
    static const QMap<QString, Judge> all{
        {QStringLiteral("echo of start"),
         [](const auto &reply) {
             return yesOrNo(AckFrame::echoes(reply, CommandFrame::startAcquisition()));
         }},
        {QStringLiteral("acknowledges"),
         [](const auto &reply) {
             return yesOrNo(AckFrame::acknowledgesParameters(reply));
         }},
        {QStringLiteral("ready"),
         [](const auto &reply) {
             return yesOrNo(AckFrame::isReady(reply));
         }},
        {QStringLiteral("charge"),
         [](const auto &reply) {
             return QString::number(AckFrame::level(reply));
         }},
        {QStringLiteral("parameters"), meaningOfParameters},
        {QStringLiteral("eeprom"), meaningOfEeprom},
        {QStringLiteral("version"), [](const auto &reply) {
             return Readback::version(reply).value_or(QStringLiteral("refused"));
         }}};
    return all;
}

QString listing(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex(' ').toUpper());
}

} // namespace

TEST(ProtocolDocument, every_frame_that_it_shows_is_the_one_that_the_program_sends)
{
    QSet<QString> shown;
    for (const QString &line : Document::blockLines(Document::read(document), QStringLiteral("sent"))) {
        const QStringList columns = Document::columns(line);
        QStringList words = Document::words(columns.first());
        const QString name = words.takeFirst();
        ASSERT_TRUE(builders().contains(name)) << qPrintable(line);
        EXPECT_EQ(columns.value(1), listing(builders()[name](words))) << qPrintable(line);
        shown << name;
    }
    for (const QString &name : builders().keys())
        EXPECT_TRUE(shown.contains(name)) << "no example of " << qPrintable(name);
}

TEST(ProtocolDocument, every_reply_that_it_shows_means_to_the_program_what_it_says)
{
    QSet<QString> shown;
    for (const QString &line : Document::blockLines(Document::read(document), QStringLiteral("reply"))) {
        const QStringList columns = Document::columns(line);
        const QString &name = columns.first();
        ASSERT_TRUE(judges().contains(name)) << qPrintable(line);
        ASSERT_TRUE(columns.size() == 2 || columns.size() == 3) << qPrintable(line);
        const QByteArray reply = columns.size() == 3 ? Document::bytes(columns[1]) : QByteArray();
        EXPECT_EQ(columns.last(), judges()[name](reply.toHex().toUpper())) << qPrintable(line);
        shown << name;
    }
    for (const QString &name : judges().keys())
        EXPECT_TRUE(shown.contains(name)) << "no example of " << qPrintable(name);
}

TEST(ProtocolDocument, every_sample_that_it_shows_is_the_current_that_it_says)
{
    const QStringList lines = Document::blockLines(Document::read(document), QStringLiteral("sample"));
    EXPECT_GE(lines.size(), 4);
    for (const QString &line : lines) {
        const QStringList columns = Document::columns(line);
        const auto sample = qFromBigEndian<qint32>(Document::bytes(columns.first()).leftJustified(4).data());
        EXPECT_EQ(columns.value(1), QString::number(PixelMath::current(sample, 25, 166), 'f', 4))
            << qPrintable(line);
    }
}

TEST(ProtocolDocument, the_table_of_ranges_is_that_of_the_settings_page)
{
    const auto rows =
        Document::tableRows(Document::section(Document::read(document), QStringLiteral("Timing")));
    ASSERT_EQ(rows.size(), static_cast<qsizetype>(CurrentRange::gears.size()));
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const CurrentRange::Gear &gear = CurrentRange::gears[static_cast<std::size_t>(i)];
        const QString charge = text(AdcLists::pcRanges, gear.pcRange).remove(u'"');
        EXPECT_EQ(rows[i],
                  QStringList({QStringLiteral("%1 nA").arg(gear.nanoamperes),
                               QString::number(gear.integrationTime), QStringLiteral("%1 pC").arg(charge)}));
    }
}
