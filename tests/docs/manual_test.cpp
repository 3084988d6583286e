// What docs/manual.md tells of numbers and names against the program.

#include "device/parameters/adclists.h"
#include "device/parameters/parameterdownload.h"
#include "device/parameters/parameterkeys.h"
#include "device/protocol/currentrange.h"
#include "device/protocol/timing.h"
#include "imaging/recordingfiles.h"
#include "tests/docs/document.h"
#include "tests/support/workingfolder.h"
#include "tests/ui/develop/dialogfields.h"
#include "ui/developwindow.h"
#include "ui/mainwindow.h"

#include <gtest/gtest.h>

#include <QDoubleSpinBox>
#include <QFileInfo>
#include <QLabel>
#include <QMap>
#include <QSet>
#include <QSettings>

namespace {

QList<QStringList> rowsOf(const QString &heading)
{
    const QString manual = Document::read(QStringLiteral("docs/manual.md"));
    return Document::tableRows(Document::section(manual, heading));
}

/// A term of the manual's formulas: a name or a number, or two of them multiplied or divided.
qint64 termOf(const QString &term, const QMap<QString, qint64> &values)
{
    const auto valueOf = [&](const QString &name) -> qint64 {
        bool isNumber = false;
        const int number = name.trimmed().toInt(&isNumber);
        EXPECT_TRUE(isNumber || values.contains(name.trimmed())) << qPrintable(name);
        return isNumber ? number : values.value(name.trimmed());
    };
    const QStringList factors = term.split(u'×');
    if (factors.size() == 2)
        return valueOf(factors[0]) * valueOf(factors[1]);
    const QStringList division = term.split(u'/');
    return division.size() == 2 ? valueOf(division[0]) / valueOf(division[1]) : valueOf(term);
}

/// "a × 2 + b − c".
qint64 resultOf(QString formula, const QMap<QString, qint64> &values)
{
    qint64 sum = 0;
    for (const QString &term : formula.replace(u'−', QStringLiteral("+−")).split(u'+'))
        sum += term.startsWith(u'−') ? -termOf(term.mid(1), values) : termOf(term, values);
    return sum;
}

QString fileName(const QString &path)
{
    return u'`' + QFileInfo(path).fileName() + u'`';
}

} // namespace

TEST(Manual, the_frame_periods_of_the_ranges_are_those_that_are_sent)
{
    const QList<QStringList> rows = rowsOf(QStringLiteral("Settings and voltages"));
    ASSERT_GE(rows.size(), static_cast<qsizetype>(CurrentRange::gears.size()));
    for (std::size_t i = 0; i < CurrentRange::gears.size(); ++i) {
        const CurrentRange::Gear &gear = CurrentRange::gears[i];
        const auto charge = static_cast<std::size_t>(AdcLists::indexOf(AdcLists::pcRanges, gear.pcRange));
        const double seconds = Timing::ofRange(gear.integrationTime).framePeriod / 1e9;
        EXPECT_EQ(rows[static_cast<qsizetype>(i)],
                  QStringList({QStringLiteral("%1nA").arg(gear.nanoamperes),
                               QStringLiteral("%1 s").arg(seconds, 0, 'f', 3),
                               QStringLiteral("%1 pC").arg(QLatin1String(AdcLists::pcRanges[charge].text))}));
    }
}

TEST(Manual, the_voltages_at_the_start_are_those_of_the_window)
{
    const WorkingFolder folder;
    folder.write(QStringLiteral("config.ini"), "[General]\nD2xxLibrary=" QV1K_VIRTUAL_LIBRARY "\n");
    const mainwindow window;
    const QMap<QString, const char *> boxes{{"Vss", "doubleSpinBox_vss"},
                                            {"Vcom", "doubleSpinBox_vcom"},
                                            {"Von", "doubleSpinBox_von"},
                                            {"Voff", "doubleSpinBox_voff"}};
    QSet<QString> told;
    for (QStringList row : rowsOf(QStringLiteral("Settings and voltages"))) {
        if (!boxes.contains(row.first()))
            continue;
        const auto *box = getChild<QDoubleSpinBox>(window, boxes[row.first()]);
        EXPECT_EQ(row.last().replace(u'−', u'-').toDouble(), box->value()) << qPrintable(row.first());
        EXPECT_EQ(box->minimum(), ParameterDownload::lowestRail);
        EXPECT_EQ(box->maximum(), ParameterDownload::highestRail);
        EXPECT_EQ(box->decimals(), ParameterDownload::railDecimals);
        told << row.first();
    }
    EXPECT_EQ(told.size(), boxes.size());
}

TEST(Manual, the_names_of_recorded_files_are_those_of_the_recorder)
{
    RecordingFiles files;
    files.root = QStringLiteral("Logs");
    files.name = QStringLiteral("NAME");
    QStringList told;
    for (const QStringList &row : rowsOf(QStringLiteral("Recording")))
        told << row.first();
    QStringList descriptions;
    for (const QString &stack : files.stacks({.tiff = true, .npy = true, .raw = true}))
        descriptions << fileName(RecordingFiles::description(stack));
    EXPECT_EQ(told,
              QStringList({fileName(files.data(1)), fileName(files.grayData(1)), fileName(files.parameters()),
                           fileName(files.picture(1)), fileName(files.video()), fileName(files.tiff()),
                           fileName(files.npy()), fileName(files.raw()), descriptions.join(", ")}));
}

TEST(Manual, the_times_are_those_of_the_engineering_dialog_in_their_order)
{
    const WorkingFolder folder;
    QSettings settings(QStringLiteral("./config.ini"), QSettings::IniFormat);
    developwindow dialog(&settings, nullptr);
    const QList<QStringList> rows = rowsOf(QStringLiteral("Timing"));
    ASSERT_EQ(rows.size(), Timing::count);
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const int number = ParameterKeys::firstTiming + static_cast<int>(i);
        const QByteArray label = "label_" + QByteArray::number(number);
        EXPECT_EQ(rows[i][0], getChild<QLabel>(dialog, label.constData())->text());
        EXPECT_EQ(rows[i][1], DialogFields::field(dialog, number)->text()) << qPrintable(rows[i][0]);
    }
}

TEST(Manual, the_formulas_of_the_times_give_what_the_calculator_gives)
{
    Timing typed;
    int prime = 1009;
    for (const Timing::Field field : Timing::fields)
        typed.*field = prime += 1234;
    typed.adcIntA = 16601;
    typed.outGap = 1001;
    const Timing worked = typed.calculated();

    const QList<QStringList> rows = rowsOf(QStringLiteral("Timing"));
    QMap<QString, qint64> values;
    for (qsizetype i = 0; i < rows.size(); ++i)
        values[rows[i][0]] = worked.*Timing::fields[static_cast<std::size_t>(i)];
    qsizetype formulas = 0;
    for (const QStringList &row : rows) {
        if (row[2].startsWith(QLatin1String("typed")))
            continue;
        ++formulas;
        EXPECT_EQ(resultOf(row[2], values), values[row[0]]) << qPrintable(row[0]);
    }
    EXPECT_EQ(formulas, static_cast<qsizetype>(Timing::derived.size()));
}
