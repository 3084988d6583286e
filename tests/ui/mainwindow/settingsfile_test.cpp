#include "tests/ui/mainwindow/mainwindowtest.h"

#include <QDir>
#include <QFileInfo>

class MainWindowSettingsFile : public MainWindowTest
{
protected:
    [[nodiscard]] QStringList hiddenDebugControls() const
    {
        QStringList hidden;
        for (const char *name :
             {"pushButton_develop", "testImage1", "testImage2", "testImage3", "testImage4", "testImage5"}) {
            if (find<QWidget>(name)->isHidden())
                hidden << QString::fromLatin1(name);
        }
        return hidden;
    }
};

TEST_F(MainWindowSettingsFile, debug_mode_shows_the_developer_button_and_the_test_images)
{
    open("DebugMode=true\n");
    EXPECT_EQ(hiddenDebugControls(), QStringList());
    for (const char *name : {"pushButton_full_on", "pushButton_full_off"})
        EXPECT_TRUE(button(name)->isHidden()) << "calibration shows it: " << name;
}

TEST_F(MainWindowSettingsFile, debug_mode_that_is_false_hides_them)
{
    open("DebugMode=false\n");
    EXPECT_EQ(hiddenDebugControls().size(), 6);
}

TEST_F(MainWindowSettingsFile, debug_mode_that_is_no_boolean_hides_them)
{
    open("DebugMode=ture\n");
    EXPECT_EQ(hiddenDebugControls().size(), 6);
}

TEST_F(MainWindowSettingsFile, a_misspelt_debug_key_hides_them)
{
    open("DebugMod=true\n");
    EXPECT_EQ(hiddenDebugControls().size(), 6);
}

TEST_F(MainWindowSettingsFile, debug_mode_is_read_once)
{
    open();
    folder.write("config.ini", "[General]\nDebugMode=true\n");
    click("pushButton_set"); // reads other keys again
    EXPECT_EQ(hiddenDebugControls().size(), 6);
}

TEST_F(MainWindowSettingsFile, a_missing_file_gives_the_defaults_and_is_made_by_the_first_write)
{
    window = std::make_unique<mainwindow>();
    window->show();
    EXPECT_EQ(find<QLineEdit>("lineEdit_savepath")->text(), "");
    EXPECT_EQ(hiddenDebugControls().size(), 6);
    EXPECT_FALSE(QFileInfo::exists(folder.filePath("config.ini")));
    click("pushButton_set");
    window.reset();
    EXPECT_EQ(stored("lineEdit_32").toString(), "16600");
}

TEST_F(MainWindowSettingsFile,
       a_file_that_is_no_ini_file_gives_the_defaults_and_is_replaced_by_the_first_write)
{
    const QByteArray garbage(3000, '\xF7');
    folder.write("config.ini", garbage);
    window = std::make_unique<mainwindow>();
    window->show();
    EXPECT_EQ(find<QLineEdit>("lineEdit_savepath")->text(), "");
    EXPECT_EQ(hiddenDebugControls().size(), 6);
    QCoreApplication::processEvents();
    EXPECT_EQ(folder.read("config.ini"), garbage) << "it was written before there was something to write";
    click("pushButton_set");
    QCoreApplication::processEvents();
    EXPECT_FALSE(find<QTextEdit>("textEdit")->toPlainText().contains("could not be written"));
    EXPECT_FALSE(finalLog().contains(QStringLiteral("配置文件写入失败")));
    EXPECT_EQ(stored("lineEdit_32").toString(), "16600");
    EXPECT_FALSE(folder.read("config.ini").contains('\xF7'));
}

TEST_F(MainWindowSettingsFile, a_folder_in_its_place_gives_the_defaults_again_at_each_start)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir("config.ini"));
    for (int start = 1; start <= 2; ++start) {
        window = std::make_unique<mainwindow>();
        window->show();
        EXPECT_EQ(find<QLineEdit>("lineEdit_savepath")->text(), "");
        EXPECT_TRUE(find<QRadioButton>("radioButton_150")->isChecked());
        EXPECT_EQ(hiddenDebugControls().size(), 6);
        MainWindowInspector::keep(*window, "SavePath", "/elsewhere");
        MainWindowInspector::keep(*window, "DebugMode", true);
        window.reset();
        EXPECT_TRUE(QFileInfo(folder.filePath("config.ini")).isDir());
    }
}

TEST_F(MainWindowSettingsFile, the_file_of_the_working_folder_is_used_also_when_that_changes_later)
{
    open("SavePath=/data/one\n");
    EXPECT_EQ(find<QLineEdit>("lineEdit_savepath")->text(), "/data/one");
    const WorkingFolder elsewhere;
    click("pushButton_set");
    window.reset();
    EXPECT_EQ(stored("lineEdit_34").toString(), "21700");
    EXPECT_FALSE(QFileInfo::exists(elsewhere.filePath("config.ini")));
}

TEST_F(MainWindowSettingsFile, the_save_path_is_the_root_of_recordings_from_the_start)
{
    open("SavePath=" + folder.filePath("recordings").toUtf8() + "\n");
    ASSERT_TRUE(QDir(folder.path()).mkdir("recordings"));
    find<QLineEdit>("lineEdit_savename")->setText("run1");
    click("checkBox_picture");
    click("pushButton_save");
    EXPECT_TRUE(QFileInfo(folder.filePath("recordings/run1")).isDir());
}

TEST_F(MainWindowSettingsFile, without_a_save_path_recordings_lie_beside_the_log)
{
    open();
    find<QLineEdit>("lineEdit_savename")->setText("run1");
    click("checkBox_picture");
    click("pushButton_save");
    EXPECT_TRUE(QFileInfo(folder.filePath("Logs/run1")).isDir());
}

TEST_F(MainWindowSettingsFile, a_file_that_cannot_be_written_is_told_once_in_the_log_and_on_the_system_page)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir("config.ini"));
    window = std::make_unique<mainwindow>();
    window->show();
    const auto said = [this] {
        return find<QTextEdit>("textEdit")->toPlainText();
    };
    const QString first = said();
    EXPECT_FALSE(first.contains("config.ini\n"));
    click("pushButton_set");
    ASSERT_TRUE(QTest::qWaitFor([&] { return said() != first; }, 5000));
    EXPECT_TRUE(said().startsWith(first)) << "the library stays the first that is said";
    const QString file = QDir::toNativeSeparators(QDir().absoluteFilePath("config.ini"));
    EXPECT_TRUE(said().endsWith("The settings could not be written to " + file)) << qPrintable(said());
    click("pushButton_set");
    QCoreApplication::processEvents();
    EXPECT_EQ(said().count("could not be written"), 1);
    const QString log = finalLog();
    EXPECT_EQ(log.count("配置文件写入失败：" + file), 1) << qPrintable(log);
}

TEST_F(MainWindowSettingsFile, a_write_that_is_the_last_before_the_end_is_told_too)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir("config.ini"));
    window = std::make_unique<mainwindow>();
    MainWindowInspector::keep(*window, "key", "value");
    EXPECT_TRUE(finalLog().contains("配置文件写入失败"));
}

TEST_F(MainWindowSettingsFile, what_the_engineering_dialog_could_not_keep_is_told_too)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir("config.ini"));
    window = std::make_unique<mainwindow>();
    window->show();
    boxes.onDialog = [](QDialog *dialog) {
        dialog->reject();
    };
    find<QPushButton>("pushButton_develop")->click();
    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return find<QTextEdit>("textEdit")->toPlainText().contains("could not be written"); },
        5000));
}

TEST_F(MainWindowSettingsFile, a_path_with_commas_that_was_typed_into_the_file_is_one_path)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir("a,b,c"));
    open("SavePath=" + folder.filePath("a,b,c").toUtf8() + "/\n");
    EXPECT_EQ(find<QLineEdit>("lineEdit_savepath")->text(), folder.filePath("a,b,c/"));
    find<QLineEdit>("lineEdit_savename")->setText("run1");
    click("checkBox_picture");
    click("pushButton_save");
    EXPECT_TRUE(QFileInfo(folder.filePath("a,b,c/run1")).isDir());
}

TEST_F(MainWindowSettingsFile, a_driver_library_with_a_comma_in_its_path_is_found)
{
    const QString copy = folder.filePath("a,b.so");
    ASSERT_TRUE(QFile::copy(QStringLiteral(QV1K_VIRTUAL_LIBRARY), copy));
    openOn(copy.toUtf8(), {});
    EXPECT_TRUE(find<QTextEdit>("textEdit")->toPlainText().endsWith("/a,b.so"));
}
