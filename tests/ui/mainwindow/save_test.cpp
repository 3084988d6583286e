#include "tests/ui/mainwindow/mainwindowtest.h"

#include <QDir>
#include <QFileDialog>

class MainWindowSave : public MainWindowTest
{
protected:
    void arm(const QString &name, const QString &frames, const QList<const char *> &kinds)
    {
        find<QLineEdit>("lineEdit_savename")->setText(name);
        find<QComboBox>("comboBox_saveframes")->setEditText(frames);
        for (const char *kind : {"checkBox_data", "checkBox_picture", "checkBox_video"}) {
            if (find<QCheckBox>(kind)->isChecked() != kinds.contains(kind))
                click(kind);
        }
        click("pushButton_save");
    }

    /// Names of the files of a recording.
    [[nodiscard]] QStringList files(const QString &name) const
    {
        return QDir(folder.filePath("Logs/" + name)).entryList(QDir::Files, QDir::Name);
    }

    void chooseFolder(const QString &choice)
    {
        boxes.onDialog = [this, choice](QDialog *dialog) {
            auto *chooser = qobject_cast<QFileDialog *>(dialog);
            ASSERT_NE(chooser, nullptr);
            m_title = chooser->windowTitle();
            m_start = chooser->directory().absolutePath();
            m_directoriesOnly = chooser->fileMode() == QFileDialog::Directory &&
                                chooser->testOption(QFileDialog::ShowDirsOnly);
            if (choice.isEmpty()) {
                dialog->reject();
                return;
            }
            chooser->findChild<QLineEdit *>("fileNameEdit")->setText(choice);
            dialog->accept();
        };
        click("pushButton_savepath");
    }

    QString m_title;
    QString m_start;
    bool m_directoriesOnly = false;
};

TEST_F(MainWindowSave, the_frame_count_box_offers_its_counts_and_starts_with_one)
{
    open();
    const auto *box = find<QComboBox>("comboBox_saveframes");
    QStringList items;
    for (int i = 0; i < box->count(); ++i)
        items << box->itemText(i);
    EXPECT_EQ(items, QStringList({"1", "5", "30", "50", "100", "500", "1000"}));
    EXPECT_EQ(box->currentText(), "1");
    EXPECT_TRUE(box->isEditable());
    EXPECT_EQ(box->lineEdit()->placeholderText(), "1~1000");
}

TEST_F(MainWindowSave, a_typed_frame_count_is_held_between_1_and_1000)
{
    open();
    auto *box = find<QComboBox>("comboBox_saveframes");
    const auto type = [box](const char *keys) {
        box->lineEdit()->selectAll();
        QTest::keyClicks(box->lineEdit(), QString::fromLatin1(keys));
        return box->currentText();
    };
    EXPECT_EQ(type("0"), "1");
    EXPECT_EQ(type("5000"), "1000");
    EXPECT_EQ(type("37"), "37");
    EXPECT_EQ(type("1000"), "1000");
    box->lineEdit()->selectAll();
    QTest::keyClick(box->lineEdit(), Qt::Key_Backspace);
    EXPECT_EQ(box->currentText(), "1");
    EXPECT_TRUE(box->lineEdit()->hasAcceptableInput());
}

TEST_F(MainWindowSave, a_typed_frame_count_is_neither_completed_nor_added_to_the_list)
{
    open();
    auto *box = find<QComboBox>("comboBox_saveframes");
    for (const char *typed : {"10", "3", "77"}) {
        box->lineEdit()->selectAll();
        QTest::keyClicks(box->lineEdit(), QString::fromLatin1(typed));
        QTest::keyClick(box->lineEdit(), Qt::Key_Return);
        EXPECT_EQ(box->currentText(), typed);
        EXPECT_EQ(box->count(), 7);
    }
}

TEST_F(MainWindowSave, a_chosen_folder_is_shown_stored_and_used_at_once)
{
    open("SavePath=" + folder.path().toUtf8() + "\n");
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("记录")));
    const QString choice = folder.filePath(QStringLiteral("记录"));
    chooseFolder(choice);
    EXPECT_EQ(m_title, "Select Directory");
    EXPECT_EQ(m_start, folder.path());
    EXPECT_TRUE(m_directoriesOnly);
    EXPECT_EQ(find<QLineEdit>("lineEdit_savepath")->text(), choice);
    EXPECT_TRUE(boxes.isEmpty());

    arm("run", "1", {"checkBox_picture"});
    EXPECT_TRUE(QFileInfo(choice + "/run").isDir());
    window.reset();
    EXPECT_EQ(stored("SavePath").toString(), choice);
}

TEST_F(MainWindowSave, the_chooser_starts_where_a_hand_edit_of_the_settings_file_says)
{
    open();
    ASSERT_TRUE(QDir(folder.path()).mkdir("edited"));
    const QByteArray edited = folder.filePath("edited").toUtf8();
    folder.write("config.ini", "[General]\nSavePath=" + edited + "\n");
    chooseFolder(QString());
    EXPECT_EQ(m_start, QString::fromUtf8(edited));
    EXPECT_EQ(find<QLineEdit>("lineEdit_savepath")->text(), "") << "a cancelled choice changes nothing";
}

TEST_F(MainWindowSave, a_cancelled_chooser_asks_for_a_valid_path_and_changes_nothing)
{
    open("SavePath=" + folder.path().toUtf8() + "\n");
    chooseFolder(QString());
    ASSERT_EQ(boxes.boxes().size(), 1);
    EXPECT_EQ(boxes.last().text, "Please select a valid path");
    EXPECT_EQ(boxes.last().buttons, QMessageBox::Ok);
    EXPECT_EQ(find<QLineEdit>("lineEdit_savepath")->text(), folder.path());
    EXPECT_EQ(stored("SavePath").toString(), folder.path());
}

TEST_F(MainWindowSave, data_records_both_tables_of_each_frame_and_the_settings)
{
    openSampling();
    click("radioButton_10");
    find<QDoubleSpinBox>("doubleSpinBox_contrast")->setValue(2.5);
    arm("run", "2", {"checkBox_data"});
    EXPECT_EQ(find<QProgressBar>("progressBar")->maximum(), 2);
    EXPECT_EQ(find<QProgressBar>("progressBar")->value(), 0);
    EXPECT_EQ(text("label_savestate"), "");
    EXPECT_EQ(folder.read("Logs/run/SetParameterData.txt"),
              "Current Range:10nA\nVss: 0.5 V\nVcom: -10 V\nVon: 15 V\nVoff: -15 V\nContrast Ratio: 2.5 \n");

    showFrames(1);
    EXPECT_EQ(text("label_savestate"), "Frame 1");
    EXPECT_EQ(find<QProgressBar>("progressBar")->value(), 1);
    EXPECT_TRUE(pipeline().isSaving());
    showFrames(1);
    EXPECT_EQ(text("label_savestate"), "Save Success");
    EXPECT_EQ(find<QProgressBar>("progressBar")->value(), 2);
    EXPECT_FALSE(pipeline().isSaving());
    EXPECT_EQ(text("label_savestate"), "Save Success");
    EXPECT_EQ(find<QLabel>("label_savestate")->toolTip(), "");
    showFrames(1);
    EXPECT_EQ(files("run"), QStringList({"SetParameterData.txt", "run_data1.csv", "run_data2.csv",
                                         "run_data_gray1.csv", "run_data_gray2.csv"}));
}

TEST_F(MainWindowSave, pictures_and_video_without_data_leave_no_settings_file)
{
    openSampling();
    arm("run", "3", {"checkBox_picture", "checkBox_video"});
    showFrames(4);
    EXPECT_EQ(text("label_savestate"), "Save Success");
    EXPECT_EQ(files("run"),
              QStringList({"output_video.mp4", "run_pic1.png", "run_pic2.png", "run_pic3.png"}));
}

TEST_F(MainWindowSave, every_kind_together_is_recorded)
{
    openSampling();
    arm("run", "1", {"checkBox_data", "checkBox_picture", "checkBox_video"});
    showFrames(2);
    EXPECT_EQ(files("run"), QStringList({"SetParameterData.txt", "output_video.mp4", "run_data1.csv",
                                         "run_data_gray1.csv", "run_pic1.png"}));
}

TEST_F(MainWindowSave, no_kind_at_all_records_nothing)
{
    openSampling();
    arm("run", "5", {});
    EXPECT_FALSE(pipeline().isSaving());
    showFrames(1);
    EXPECT_FALSE(QFileInfo::exists(folder.filePath("Logs/run")));
    EXPECT_EQ(text("label_savestate"), "");
}

TEST_F(MainWindowSave, without_a_name_the_recording_is_named_after_the_moment)
{
    openSampling();
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
    arm(QString(), "1", {"checkBox_picture"});
    const QStringList folders = QDir(folder.filePath("Logs")).entryList({"20*"}, QDir::Dirs);
    ASSERT_EQ(folders.size(), 1);
    const QDateTime named = QDateTime::fromString(folders.first(), "yyyyMMdd_hhmmss");
    EXPECT_TRUE(named >= before && named <= QDateTime::currentDateTime()) << qPrintable(folders.first());
    EXPECT_EQ(find<QLineEdit>("lineEdit_savename")->text(), "");
}

TEST_F(MainWindowSave, a_press_while_a_recording_runs_is_ignored)
{
    openSampling();
    arm("first", "3", {"checkBox_picture"});
    showFrames(1);
    arm("second", "30", {"checkBox_picture"});
    EXPECT_EQ(find<QProgressBar>("progressBar")->maximum(), 3);
    EXPECT_EQ(text("label_savestate"), "Frame 1");
    showFrames(2);
    EXPECT_EQ(files("first").size(), 3);
    EXPECT_FALSE(QFileInfo::exists(folder.filePath("Logs/second")));
}

TEST_F(MainWindowSave, a_recording_may_be_armed_before_the_acquisition_and_begins_with_it)
{
    openConnected();
    arm("early", "1", {"checkBox_picture"});
    EXPECT_TRUE(pipeline().isSaving());
    click("pushButton_sample");
    showFrames(1);
    EXPECT_EQ(text("label_savestate"), "Save Success");
    EXPECT_EQ(files("early"), QStringList("early_pic1.png"));
}

TEST_F(MainWindowSave, stopping_the_acquisition_ends_the_recording)
{
    openSampling();
    arm("cut", "5", {"checkBox_picture", "checkBox_video"});
    showFrames(2);
    stop();
    EXPECT_EQ(text("label_savestate"), "Save Stop");
    EXPECT_FALSE(pipeline().isSaving());
    EXPECT_EQ(files("cut"), QStringList({"cut_pic1.png", "cut_pic2.png", "output_video.mp4"}));

    click("pushButton_sample");
    EXPECT_EQ(text("label_savestate"), "");
    EXPECT_EQ(find<QProgressBar>("progressBar")->value(), 0);
    arm("again", "1", {"checkBox_picture"});
    showFrames(1);
    EXPECT_EQ(text("label_savestate"), "Save Success");
}

TEST_F(MainWindowSave, stopping_without_a_recording_says_nothing_about_one)
{
    openSampling();
    showFrames(1);
    stop();
    EXPECT_EQ(text("label_savestate"), "");
}

TEST_F(MainWindowSave, the_summary_without_a_checked_range_begins_with_an_empty_line)
{
    open();
    auto *range = find<QRadioButton>("radioButton_150");
    range->setAutoExclusive(false);
    range->setChecked(false);
    arm("run", "1", {"checkBox_data"});
    EXPECT_TRUE(folder.read("Logs/run/SetParameterData.txt").startsWith("\nVss: 0.5 V\n"));
}

TEST_F(MainWindowSave, a_path_that_leads_nowhere_goes_on_and_tells_how_many_files_failed)
{
    openSampling("SavePath=" + folder.filePath("no/such").toUtf8() + "\n");
    arm("place", "1", {"checkBox_picture"});
    showFrames(1);
    EXPECT_EQ(text("label_savestate"), "Save Success");
    EXPECT_EQ(find<QLabel>("label_savestate")->toolTip(), "1 file could not be written");

    ASSERT_TRUE(QDir().mkpath(folder.filePath("no/such")));
    arm("good", "1", {"checkBox_picture"});
    EXPECT_EQ(find<QLabel>("label_savestate")->toolTip(), "");
}

TEST_F(MainWindowSave, beside_the_state_stands_how_many_frames_are_stored_and_files_failed)
{
    openSampling();
    ASSERT_TRUE(QDir(folder.path()).mkpath("Logs/run/run_pic2.png"));
    arm("run", "3", {"checkBox_picture"});
    EXPECT_EQ(text("label_savedetail"), "0 of 3 frames stored");
    showFrames(1);
    EXPECT_EQ(text("label_savedetail"), "1 of 3 frames stored");
    showFrames(1);
    EXPECT_EQ(text("label_savestate"), "Frame 2");
    EXPECT_EQ(text("label_savedetail"), "2 of 3 frames stored, 1 file failed");
    find<QLineEdit>("lineEdit_savename")->setText("typed meanwhile");
    EXPECT_EQ(text("label_savedetail"), "2 of 3 frames stored, 1 file failed");
    showFrames(1);
    EXPECT_EQ(text("label_savestate"), "Save Success");
    EXPECT_EQ(text("label_savedetail"), "3 of 3 frames stored, 1 file failed");
}

TEST_F(MainWindowSave, a_recording_that_ended_early_says_how_far_it_came)
{
    openSampling();
    arm("cut", "5", {"checkBox_picture"});
    showFrames(2);
    stop();
    EXPECT_EQ(text("label_savestate"), "Save Stop");
    EXPECT_EQ(text("label_savedetail"), "2 of 5 frames stored");
}

TEST_F(MainWindowSave, before_the_press_it_says_that_nothing_is_ticked)
{
    open();
    const QString nothing = "Nothing is ticked: nothing will be saved";
    EXPECT_EQ(text("label_savedetail"), nothing);
    click("checkBox_video");
    EXPECT_EQ(text("label_savedetail"), "");
    click("checkBox_video");
    EXPECT_EQ(text("label_savedetail"), nothing);
    click("pushButton_save");
    EXPECT_EQ(text("label_savedetail"), nothing);
    EXPECT_EQ(text("label_savestate"), "");
}

TEST_F(MainWindowSave, before_the_press_it_says_that_a_recording_of_that_name_will_be_overwritten)
{
    ASSERT_TRUE(QDir(folder.path()).mkpath("one/run"));
    folder.write("one/run/run_pic1.png", "x");
    ASSERT_TRUE(QDir(folder.path()).mkpath("two/empty"));
    const QString overwritten = "A recording of this name exists and will be overwritten";
    open("SavePath=" + folder.filePath("one").toUtf8() + "\n");
    click("checkBox_picture");
    EXPECT_EQ(text("label_savedetail"), "") << "without a name it is the time";
    auto *name = find<QLineEdit>("lineEdit_savename");
    name->setText("ru");
    EXPECT_EQ(text("label_savedetail"), "");
    name->setText("run");
    EXPECT_EQ(text("label_savedetail"), overwritten);
    name->setText("r/un");
    EXPECT_EQ(text("label_savedetail"), overwritten) << "the name that it gets";
    chooseFolder(folder.filePath("two"));
    EXPECT_EQ(text("label_savedetail"), "");
    name->setText("empty");
    EXPECT_EQ(text("label_savedetail"), "");
    chooseFolder(folder.filePath("one"));
    name->setText("run");
    EXPECT_EQ(text("label_savedetail"), overwritten);
}

TEST_F(MainWindowSave, a_name_leads_to_no_other_folder)
{
    openSampling();
    arm("../../out/run", "1", {"checkBox_picture"});
    showFrames(1);
    EXPECT_TRUE(QFileInfo::exists(folder.filePath("Logs/....outrun/....outrun_pic1.png")));
    EXPECT_EQ(find<QLineEdit>("lineEdit_savename")->text(), "../../out/run");
}

TEST_F(MainWindowSave, no_text_beside_the_state_moves_the_page_or_is_cut)
{
    open();
    goTo(button("pushButton_save"));
    auto *detail = find<QLabel>("label_savedetail");
    QCoreApplication::processEvents();
    const QRect before = button("pushButton_save")->geometry();
    const int height = detail->height();
    for (const char *shown : {"", "Nothing is ticked: nothing will be saved",
                              "A recording of this name exists and will be overwritten",
                              "1000 of 1000 frames stored, 3001 files failed"}) {
        detail->setText(QString::fromUtf8(shown));
        QCoreApplication::processEvents();
        EXPECT_EQ(button("pushButton_save")->geometry(), before) << shown;
        EXPECT_EQ(detail->height(), height) << shown;
        EXPECT_LE(detail->heightForWidth(detail->width()), height) << shown;
    }
}
