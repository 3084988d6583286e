#include "tests/support/workingfolder.h"

#include <gtest/gtest.h>

#include <QProcess>
#include <QProcessEnvironment>
#include <QTest>

namespace {

/// qv1k-start in a folder of its own, with a program beside it that stands in for the window, and a home of
/// its own for its user.
class Start : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir().mkpath(folder.filePath(QStringLiteral("program"))));
        ASSERT_TRUE(QFile::copy(QStringLiteral(QV1K_START), starter));
    }

    void provideWindow() const
    {
        ASSERT_TRUE(QFile::copy(QStringLiteral(QV1K_STANDIN_WINDOW),
                                folder.filePath(QStringLiteral("program/qv1k"))));
    }

    void start(const QStringList &arguments)
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), folder.path());
        process.setProcessEnvironment(environment);
        process.start(starter, arguments);
        ASSERT_TRUE(process.waitForFinished(60000)) << qPrintable(process.errorString());
        ASSERT_EQ(process.exitStatus(), QProcess::NormalExit);
        exitCode = process.exitCode();
        errors = QString::fromUtf8(process.readAllStandardError());
    }

    /// The window was started in this folder of the user's.
    void expectWindowIn(const QString &name) const
    {
        const QString sign = name + QStringLiteral("/started.txt");
        ASSERT_TRUE(QTest::qWaitFor([&] { return QFile::exists(folder.filePath(sign)); }, 60000));
        EXPECT_EQ(QFileInfo(QString::fromUtf8(folder.read(sign))).canonicalFilePath(),
                  QFileInfo(folder.filePath(name)).canonicalFilePath());
    }

    WorkingFolder folder;
    const QString starter = folder.filePath(QStringLiteral("program/qv1k-start"));
    int exitCode = -1;
    QString errors;
};

} // namespace

TEST_F(Start, starts_the_window_in_the_users_folder_which_it_makes)
{
    provideWindow();
    start({});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    expectWindowIn(QStringLiteral("QV1K"));
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("QV1K/config.ini"))));
}

TEST_F(Start, starts_the_virtual_detector_in_a_folder_of_its_own_again_and_again)
{
    provideWindow();
    const QString settings = QStringLiteral("QV1K virtual detector/config.ini");
    start({QStringLiteral("--virtual")});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    expectWindowIn(QStringLiteral("QV1K virtual detector"));
    EXPECT_EQ(folder.read(settings), "[General]\nD2xxLibrary=virtual\n");

    folder.write(settings, "[General]\nD2xxLibrary=virtual\nDebugMode=true\n");
    start({QStringLiteral("--virtual")});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    EXPECT_EQ(folder.read(settings), "[General]\nD2xxLibrary=virtual\nDebugMode=true\n");
}

TEST_F(Start, tells_which_program_cannot_be_started)
{
    start({});
    EXPECT_EQ(exitCode, 1);
    EXPECT_TRUE(errors.contains(folder.filePath(QStringLiteral("program/qv1k")))) << qPrintable(errors);
}

TEST_F(Start, tells_which_folder_cannot_be_made)
{
    provideWindow();
    folder.write(QStringLiteral("QV1K"), "a file in its place");
    start({});
    EXPECT_EQ(exitCode, 1);
    EXPECT_TRUE(errors.contains(folder.filePath(QStringLiteral("QV1K")))) << qPrintable(errors);
}
