#include "tests/ui/mainwindow/mainwindowtest.h"

namespace {

/// The acknowledgements of one whole frame: blocks 1 to 31, then 0.
void appendBlockRequests(QByteArrayList &frames)
{
    for (int block = 1; block <= 32; ++block)
        frames.append("FFAA00" + QByteArray::number(block % 32, 16).rightJustified(2, '0').toUpper() +
                      "0DEB");
}

} // namespace

class MainWindowWire : public MainWindowTest
{
};

TEST_F(MainWindowWire, a_whole_run_writes_exactly_these_frames_each_in_one_piece)
{
    QByteArrayList expected;
    open("DebugMode=true\n");

    click("pushButton_Connect");
    expected += QByteArrayList{"FFAA02100DEB"};

    const std::array<std::pair<const char *, const char *>, 5> patterns{{{"testImage1", "FFAA03C00DEB"},
                                                                         {"testImage2", "FFAA03C10DEB"},
                                                                         {"testImage3", "FFAA03C20DEB"},
                                                                         {"testImage4", "FFAA03C30DEB"},
                                                                         {"testImage5", "FFAA03CF0DEB"}}};
    for (const auto &[name, selection] : patterns) {
        click(name);
        click("pushButton_sample");
        expected += QByteArrayList{selection, "FFAA03AA0DEB", "FFAA03A00DEB", "FFAA00000DEB"};
        stop();
        expected += QByteArrayList{"FFAA03A10DEB", "FFAA02100DEB"};
        click(name);
    }

    click("pushButton_sample");
    expected += QByteArrayList{"FFAA03AA0DEB", "FFAA03A00DEB", "FFAA00000DEB"};
    showFrames(2);
    appendBlockRequests(expected);
    appendBlockRequests(expected);
    stop();
    expected += QByteArrayList{"FFAA03A10DEB", "FFAA02100DEB"};

    click("pushButton_Connect"); // says nothing to the detector
    EXPECT_EQ(button("pushButton_Connect")->text(), "Connect");
    EXPECT_EQ(detector.writtenTexts(), expected);
    EXPECT_TRUE(boxes.isEmpty());
}
