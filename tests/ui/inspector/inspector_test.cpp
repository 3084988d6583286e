#include "tests/support/accessibletree.h"
#include "tests/support/children.h"
#include "tests/ui/inspector/inspectedframes.h"
#include "ui/inspector/inspector.h"
#include "ui/inspector/plot.h"

#include <gtest/gtest.h>

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

using namespace InspectedFrames;

/// The window on a frame that the test makes, with a clock that lets everything through.
class InspectorWindow : public testing::Test
{
protected:
    void showFrame(std::vector<double> next)
    {
        frame = std::move(next);
        inspector.frameArrived();
        waitForFigures();
    }

    void waitForFigures()
    {
        const int begun = inspector.runner().begun();
        QObject context;
        bool isShown = false;
        QObject::connect(&inspector.runner(), &InspectionRunner::inspected, &context,
                         [&] { isShown = inspector.runner().begun() == begun; });
        ASSERT_TRUE(QTest::qWaitFor([&] { return isShown; }, 20000));
    }

    template <typename Widget>
    [[nodiscard]] Widget *find(const char *name) const
    {
        return getChild<Widget>(inspector, name);
    }
    [[nodiscard]] QString value(const char *name) const
    {
        return find<QLabel>(QByteArray("value_").append(name).constData())->text().replace(u'\u00a0', u' ');
    }
    [[nodiscard]] QString note() const { return find<QLabel>("label_note")->text(); }

    /// All texts that are shown.
    [[nodiscard]] QString everything() const
    {
        QStringList texts;
        for (const QLabel *label : inspector.findChildren<QLabel *>())
            texts << label->text();
        return texts.join(u'\n');
    }

    std::vector<double> frame;
    qint64 now = 0;
    FrameCounts counts;
    Inspector inspector{[this] { return std::span<const double>(frame); }, [this] { return now += 1000; },
                        [this] {
                            return counts;
                        }};
};

TEST_F(InspectorWindow, says_that_there_is_no_frame_yet_and_shows_no_figures)
{
    inspector.pick(3, 4);
    inspector.frameArrived();
    inspector.show();
    EXPECT_EQ(note(), "No frame yet");
    EXPECT_EQ(value("mean"), "–");
    EXPECT_EQ(value("recorded"), "–");
    EXPECT_EQ(inspector.runner().begun(), 0);
    EXPECT_FALSE(inspector.grab().isNull());
    showFrame(flat(1));
    EXPECT_EQ(note(), "");
}

TEST_F(InspectorWindow, shows_the_figures_of_the_frame)
{
    inspector.pick(2, 30);
    counts = {.received = 9, .waiting = 2, .recorded = 3, .wanted = 5, .losses = 1};
    std::vector<double> next = places();
    for (double &current : next)
        current /= 10;
    showFrame(next);
    EXPECT_EQ(value("pixel"), "(2, 30) 0.2003 nA");
    EXPECT_EQ(value("minimum"), "0.0000 nA");
    EXPECT_EQ(value("maximum"), "102.3102 nA");
    EXPECT_EQ(value("mean"), "51.1551 nA");
    EXPECT_EQ(value("clipped_below"), "1 (0.00 %)");
    EXPECT_EQ(value("temporal"), "–");
    EXPECT_EQ(value("received"), "9");
    EXPECT_EQ(value("waiting"), "2");
    EXPECT_EQ(value("recorded"), "3 of 5");
    EXPECT_EQ(value("losses"), "1");
    showFrame(next);
    EXPECT_EQ(value("temporal"), "0.0000 nA");
    EXPECT_EQ(value("spatial"), value("deviation"));
}

TEST_F(InspectorWindow, says_that_the_memory_does_not_suffice_until_it_does)
{
    showFrame(flat(1));
    const QString mean = value("mean");
    Q_EMIT const_cast<InspectionRunner &>(inspector.runner()).failed();
    EXPECT_EQ(note(), "The memory does not suffice for these figures");
    EXPECT_EQ(value("mean"), mean) << "those of the frame before";
    showFrame(flat(2));
    EXPECT_EQ(note(), "");
}

TEST_F(InspectorWindow, follows_the_picked_pixel_and_keeps_to_the_frame)
{
    showFrame(places());
    inspector.pick(512, 7);
    waitForFigures();
    EXPECT_EQ(value("pixel"), "(512, 7) 512.0007 nA");
    EXPECT_EQ(find<QGroupBox>("group_row")->title(), "Row 512");
    EXPECT_EQ(find<QGroupBox>("group_column")->title(), "Column 7");
    EXPECT_EQ(find<Plot>("plot_row")->content().mark, 7);
    EXPECT_EQ(find<Plot>("plot_column")->content().values.at(100), 100.0007);
    inspector.pick(-1, 1024);
    waitForFigures();
    EXPECT_EQ(value("pixel"), "(0, 1023) 0.1023 nA");
}

TEST_F(InspectorWindow, keeps_to_the_region_whichever_end_is_typed_first)
{
    showFrame(places());
    find<QSpinBox>("spinBox_last_rows")->setValue(20);
    find<QSpinBox>("spinBox_first_rows")->setValue(22);
    find<QSpinBox>("spinBox_first_columns")->setValue(40);
    find<QSpinBox>("spinBox_last_columns")->setValue(40);
    ASSERT_TRUE(QTest::qWaitFor([&] { return value("maximum") == "22.0040 nA"; }, 20000));
    EXPECT_EQ(value("minimum"), "20.0040 nA");
    EXPECT_EQ(find<Plot>("plot_row")->content().values.size(), 1U);
    EXPECT_EQ(find<Plot>("plot_column")->content().across.begin, 20);
    find<QPushButton>("pushButton_whole")->click();
    EXPECT_TRUE(QTest::qWaitFor([&] { return value("maximum") == "1023.1023 nA"; }, 20000));
}

TEST_F(InspectorWindow, shows_numbers_of_dark_flat_and_saturated_frames)
{
    for (const double current : {0.0, 75.0, 150.6023}) {
        showFrame(flat(current));
        showFrame(flat(current));
        EXPECT_FALSE(everything().contains("nan", Qt::CaseInsensitive)) << qPrintable(everything());
        EXPECT_FALSE(everything().contains("inf", Qt::CaseInsensitive)) << qPrintable(everything());
        EXPECT_EQ(value("deviation"), "0.0000 nA");
        EXPECT_EQ(value("clipped_below"), current == 0 ? "1048576 (100.00 %)" : "0 (0.00 %)");
        EXPECT_EQ(value("clipped_above"), current > 150 ? "1048576 (100.00 %)" : "0 (0.00 %)");
        EXPECT_FALSE(inspector.grab().isNull());
    }
}

TEST_F(InspectorWindow, names_the_first_pixels_that_stand_out)
{
    std::vector<double> next = flat(80);
    at(next, 700, 300) = 150;
    for (int column = 10; column < 30; column += 2)
        at(next, 5, column) = 0;
    showFrame(next);
    EXPECT_EQ(value("hot"), "1");
    EXPECT_EQ(value("hot_places"), "(700, 300)");
    EXPECT_EQ(value("dead"), "10");
    EXPECT_TRUE(value("dead_places").startsWith("(5, 10) (5, 12) "));
    EXPECT_TRUE(value("dead_places").endsWith("(5, 24) …"));
}

TEST_F(InspectorWindow, can_be_operated_by_keys_and_read_aloud)
{
    inspector.show();
    showFrame(flat(1));
    ASSERT_TRUE(QTest::qWaitForWindowActive(&inspector));
    int focusable = 0;
    const QStringList found = AccessibleTree::nameless(&inspector, &focusable);
    EXPECT_TRUE(found.isEmpty()) << qPrintable(found.join(", "));
    EXPECT_GT(focusable, 20);
    const QWidget *last = find<QLabel>("value_losses");
    for (int presses = 0; presses < 40 && !last->hasFocus(); ++presses)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(last->hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(inspector.isVisible());
}
