#include "tests/ui/mainwindow/mainwindowtest.h"

#include <QFile>

class MainWindowSession : public MainWindowTest
{
protected:
    void record(int frames)
    {
        find<QLineEdit>("lineEdit_savename")->setText("session");
        find<QComboBox>("comboBox_saveframes")->setEditText(QString::number(frames));
        click("checkBox_picture");
        click("pushButton_save");
        showFrames(frames);
    }

    /// One call a line.
    static QStringList golden()
    {
        QFile file(QStringLiteral(QV1K_TEST_DATA "/session.txt"));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    }
};

TEST_F(MainWindowSession, a_faultless_session_makes_exactly_these_calls_of_the_driver_library)
{
    open();
    connectDetector();
    click("pushButton_set");
    click("pushButton_sample");
    showFrames(3);
    stop();
    click("pushButton_sample");
    record(2);
    stop();
    click("pushButton_Connect");
    EXPECT_EQ(button("pushButton_Connect")->text(), "Connect");

    EXPECT_EQ(detector.link.trace(), golden());
}
