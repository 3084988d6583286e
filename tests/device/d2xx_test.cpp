#include "device/d2xx.h"
#include "device/d2xxlibrary.h"
#include "tests/support/faked2xx.h"
#include "tests/support/workingfolder.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QFileInfo>
#include <QLibrary>

#include <atomic>
#include <thread>

using namespace d2xx;

TEST(DriverBoundary, without_a_library_every_call_reports_a_failure_and_nothing_crashes)
{
    D2xx none;
    quint32 count = 7;
    DeviceRecord record{};
    Handle handle = nullptr;
    EXPECT_FALSE(none.isUsable());
    EXPECT_NE(none.createDeviceInfoList(&count), Status::Ok);
    EXPECT_NE(none.getDeviceInfoList(&record, &count), Status::Ok);
    EXPECT_NE(none.open("QV1K", &handle), Status::Ok);
    EXPECT_NE(none.read(handle, &count, 4, &count), Status::Ok);
    EXPECT_NE(none.write(handle, &count, 4, &count), Status::Ok);
    EXPECT_NE(none.close(handle), Status::Ok);
}

TEST(DriverBoundary, a_call_on_a_null_or_closed_handle_does_not_reach_the_library)
{
    FakeD2xx fake;
    D2xx &d2xx = *fake.driver();
    quint32 a = 0;
    quint32 b = 0;
    quint32 c = 0;
    EXPECT_EQ(d2xx.getStatus(nullptr, &a, &b, &c), Status::InvalidHandle);

    Handle handle = nullptr;
    ASSERT_EQ(d2xx.open("QV1K", &handle), Status::Ok);
    EXPECT_EQ(d2xx.getStatus(handle, &a, &b, &c), Status::Ok);
    EXPECT_EQ(fake.statusCalls(), 1);
    EXPECT_EQ(d2xx.close(handle), Status::Ok);

    EXPECT_EQ(d2xx.getStatus(handle, &a, &b, &c), Status::InvalidHandle);
    EXPECT_EQ(d2xx.read(handle, &a, 1, &b), Status::InvalidHandle);
    EXPECT_EQ(d2xx.write(handle, &a, 1, &b), Status::InvalidHandle);
    EXPECT_EQ(d2xx.purge(handle, 3), Status::InvalidHandle);
    EXPECT_EQ(d2xx.close(handle), Status::InvalidHandle);
    EXPECT_EQ(fake.statusCalls(), 1);
    EXPECT_EQ(fake.reads(), 0);
    EXPECT_EQ(fake.written().size(), 0);
    EXPECT_EQ(fake.calls().count(QStringLiteral("Close")), 1);
}

TEST(DriverBoundary, closing_waits_for_a_call_that_is_under_way_on_another_thread)
{
    FakeD2xx fake;
    D2xx &d2xx = *fake.driver();
    Handle handle = nullptr;
    ASSERT_EQ(d2xx.open("QV1K", &handle), Status::Ok);

    std::atomic<bool> inside{false};
    std::atomic<bool> mayReturn{false};
    std::atomic<bool> returned{false};
    fake.setOnWrite([&](const QByteArray &) {
        inside = true;
        while (!mayReturn)
            std::this_thread::yield();
        returned = true;
    });
    std::thread writer([&] {
        quint32 count = 0;
        d2xx.write(handle, "x", 1, &count);
    });
    while (!inside)
        std::this_thread::yield();
    std::atomic<bool> returnedBeforeClose{false};
    std::thread closer([&] {
        d2xx.close(handle);
        returnedBeforeClose = returned.load();
    });
    // The handle counts as closed at once, for every new call.
    quint32 a = 0;
    quint32 b = 0;
    quint32 c = 0;
    while (d2xx.getStatus(handle, &a, &b, &c) == Status::Ok)
        std::this_thread::yield();
    EXPECT_TRUE(fake.isOpen());
    mayReturn = true;
    writer.join();
    closer.join();
    EXPECT_TRUE(returnedBeforeClose);
    EXPECT_FALSE(fake.isOpen());
}

TEST(DriverBoundary, a_library_that_fails_to_tell_a_problem_tells_none)
{
    const FakeD2xx fake;
    d2xx::Functions functions = FakeD2xx::functions();
    functions.tellProblem = [](Handle, char *text, quint32 size) {
        qstrncpy(text, "not meant", size);
        return Status::OtherError;
    };
    D2xx d2xx(functions);
    EXPECT_EQ(d2xx.problem(nullptr), QString());
    Handle handle = nullptr;
    ASSERT_EQ(d2xx.open("QV1K", &handle), Status::Ok);
    EXPECT_EQ(d2xx.problem(handle), QString());
}

namespace {

/// Lets a call that hangs come back at the end of a test.
class Hanging
{
public:
    ~Hanging() { release(); }

    void hang()
    {
        m_hangs = true;
        while (!m_released)
            std::this_thread::yield();
        m_hangs = false;
    }
    void release()
    {
        m_released = true;
        while (m_hangs)
            std::this_thread::yield();
    }
    void waitUntilItHangs() const
    {
        while (!m_hangs)
            std::this_thread::yield();
    }

private:
    std::atomic<bool> m_hangs{false};
    std::atomic<bool> m_released{false};
};

/// A device that is open, and a write to it that hangs in another thread.
class HangingWrite : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(d2xx.open("QV1K", &handle), Status::Ok);
        fake.setOnWrite([this](const QByteArray &) { m_hanging.hang(); });
        m_writer = std::thread([this, opened = handle] {
            quint32 count = 0;
            d2xx.write(opened, "x", 1, &count);
        });
        m_hanging.waitUntilItHangs();
    }
    void TearDown() override { comeBack(); }

    void comeBack()
    {
        m_hanging.release();
        if (m_writer.joinable())
            m_writer.join();
    }

    FakeD2xx fake;
    D2xx &d2xx = *fake.driver();
    Handle handle = nullptr;

private:
    Hanging m_hanging;
    std::thread m_writer;
};

} // namespace

TEST_F(HangingWrite, a_call_that_hangs_holds_up_its_closing_for_two_seconds_and_no_later_one)
{
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(d2xx.close(handle), Status::OtherError);
    EXPECT_GE(timer.elapsed(), 1990);
    EXPECT_LT(timer.elapsed(), 5000);
    EXPECT_EQ(fake.calls().count(QStringLiteral("Close")), 0) << "the handle is left behind";

    ASSERT_EQ(d2xx.open("QV1K", &handle), Status::Ok);
    timer.restart();
    EXPECT_EQ(d2xx.close(handle), Status::Ok);
    EXPECT_LT(timer.elapsed(), 1500);
    comeBack();
}

TEST_F(HangingWrite, a_handle_that_was_left_behind_is_closed_when_the_call_comes_back)
{
    EXPECT_EQ(d2xx.close(handle), Status::OtherError);
    EXPECT_TRUE(fake.isOpen());
    comeBack();
    EXPECT_FALSE(fake.isOpen()) << "nobody could open the device any more";
    EXPECT_EQ(fake.calls().count(QStringLiteral("Close")), 1);
}

TEST(DriverBoundary, a_close_that_hangs_itself_comes_back_after_two_seconds)
{
    FakeD2xx fake;
    D2xx &d2xx = *fake.driver();
    Handle handle = nullptr;
    ASSERT_EQ(d2xx.open("QV1K", &handle), Status::Ok);
    Hanging hanging;
    fake.onClose = [&] {
        hanging.hang();
    };
    EXPECT_EQ(d2xx.close(handle), Status::OtherError);
    EXPECT_EQ(d2xx.close(handle), Status::InvalidHandle);
    hanging.waitUntilItHangs();
    hanging.release();
    while (fake.isOpen())
        std::this_thread::yield();
}

TEST(DriverLibrary, a_library_written_by_somebody_else_works_unchanged)
{
    const D2xxLibrary library = D2xxLibrary::load(QStringLiteral(QV1K_FOREIGN_LIBRARY));
    ASSERT_TRUE(library.driver->isUsable()) << qPrintable(library.problem);
    EXPECT_FALSE(library.isVirtual);
    EXPECT_EQ(library.path, QStringLiteral(QV1K_FOREIGN_LIBRARY));
    EXPECT_EQ(library.description(), QStringLiteral("Driver library: ") + library.path);

    quint32 count = 0;
    ASSERT_EQ(library.driver->createDeviceInfoList(&count), Status::Ok);
    ASSERT_EQ(count, 2u);
    DeviceRecord records[2];
    ASSERT_EQ(library.driver->getDeviceInfoList(records, &count), Status::Ok);
    EXPECT_STREQ(records[0].serialNumber, "FIRST");
    EXPECT_STREQ(records[1].serialNumber, "SECOND");
    Handle handle = nullptr;
    EXPECT_EQ(library.driver->open("FIRST", &handle), Status::DeviceNotOpened);
    EXPECT_EQ(library.driver->open("SECOND", &handle), Status::Ok);
    EXPECT_EQ(library.driver->close(handle), Status::Ok);
}

TEST(DriverLibrary, a_missing_file_is_told_with_the_systems_reason)
{
    const D2xxLibrary library = D2xxLibrary::load(QStringLiteral("/nowhere/libnothing.so"));
    EXPECT_FALSE(library.driver->isUsable());
    EXPECT_TRUE(library.problem.contains(QStringLiteral("/nowhere/libnothing.so")))
        << qPrintable(library.problem);
    EXPECT_TRUE(library.description().startsWith(QStringLiteral("No driver library could be loaded")));
    EXPECT_TRUE(library.description().contains(library.problem));
}

TEST(DriverLibrary, a_file_that_is_no_library_is_refused)
{
    const WorkingFolder folder;
    folder.write(QStringLiteral("text.so"), "not a library");
    const D2xxLibrary library = D2xxLibrary::load(folder.filePath(QStringLiteral("text.so")));
    EXPECT_FALSE(library.driver->isUsable());
    EXPECT_FALSE(library.problem.isEmpty());
}

TEST(DriverLibrary, a_library_without_the_calls_is_refused_with_their_names)
{
#ifdef Q_OS_WIN
    const QString ofTheSystem = QStringLiteral("kernel32.dll");
#else
    const QString ofTheSystem = QStringLiteral("libm.so.6");
#endif
    const D2xxLibrary library = D2xxLibrary::load(ofTheSystem);
    EXPECT_FALSE(library.driver->isUsable());
    for (const char *name :
         {"FT_CreateDeviceInfoList", "FT_GetDeviceInfoList", "FT_OpenEx", "FT_Close", "FT_ResetDevice",
          "FT_SetBitMode", "FT_SetLatencyTimer", "FT_SetUSBParameters", "FT_SetFlowControl", "FT_Purge",
          "FT_SetTimeouts", "FT_GetStatus", "FT_Read", "FT_Write"})
        EXPECT_TRUE(library.problem.contains(QString::fromLatin1(name))) << name;
    EXPECT_FALSE(library.problem.contains(QStringLiteral("QV1K_")));
    EXPECT_EQ(library.provenance(), QStringLiteral("驱动库加载失败：") + library.problem);
}

TEST(DriverLibrary, the_virtual_detector_is_found_by_its_name_and_said_to_be_simulated)
{
    const D2xxLibrary library = D2xxLibrary::load(QStringLiteral("virtual"));
    ASSERT_TRUE(library.driver->isUsable()) << qPrintable(library.problem);
    EXPECT_TRUE(library.isVirtual);
    EXPECT_EQ(QFileInfo(library.path).canonicalFilePath(),
              QFileInfo(QStringLiteral(QV1K_VIRTUAL_LIBRARY)).canonicalFilePath());
    EXPECT_TRUE(library.description().contains(QStringLiteral("simulated, not measured")));
    EXPECT_TRUE(library.driver->functions().setDeviceEventCallback != nullptr);
}

TEST(DriverLibrary, the_virtual_detector_is_recognised_by_its_path_too)
{
    EXPECT_TRUE(D2xxLibrary::load(QStringLiteral(QV1K_VIRTUAL_LIBRARY)).isVirtual);
}

TEST(DriverLibrary, a_library_that_simulates_says_so_whatever_its_file_is_called)
{
    const WorkingFolder folder;
    const QString simulating = folder.filePath(QStringLiteral("LIBFTD2XX.SO"));
    ASSERT_TRUE(QFile::copy(QStringLiteral(QV1K_VIRTUAL_LIBRARY), simulating));
    const D2xxLibrary library = D2xxLibrary::load(simulating);
    ASSERT_TRUE(library.driver->isUsable()) << qPrintable(library.problem);
    EXPECT_TRUE(library.isVirtual);
    EXPECT_TRUE(library.description().startsWith(QStringLiteral("Virtual detector")));
    EXPECT_EQ(library.provenance(), QStringLiteral("驱动库：") + QFileInfo(simulating).canonicalFilePath() +
                                        QStringLiteral("（模拟数据）"));
}

TEST(DriverLibrary, a_library_that_does_not_simulate_is_not_taken_for_the_virtual_detector_by_its_name)
{
    const WorkingFolder folder;
    const QString foreign = folder.filePath(QFileInfo(QStringLiteral(QV1K_VIRTUAL_LIBRARY)).fileName());
    ASSERT_TRUE(QFile::copy(QStringLiteral(QV1K_FOREIGN_LIBRARY), foreign));
    const D2xxLibrary library = D2xxLibrary::load(foreign);
    ASSERT_TRUE(library.driver->isUsable()) << qPrintable(library.problem);
    EXPECT_FALSE(library.isVirtual);
    EXPECT_TRUE(library.provenance().endsWith(QStringLiteral("（非模拟数据）")));
}

TEST(DriverLibrary, a_library_is_named_by_its_real_path_when_it_was_found_by_a_link)
{
    const WorkingFolder folder;
    ASSERT_TRUE(
        QFile::link(QStringLiteral(QV1K_FOREIGN_LIBRARY), folder.filePath(QStringLiteral("link.so"))));
    const QString real = QFileInfo(QStringLiteral(QV1K_FOREIGN_LIBRARY)).canonicalFilePath();
    EXPECT_EQ(D2xxLibrary::load(folder.filePath(QStringLiteral("link.so"))).path, real);
    EXPECT_EQ(D2xxLibrary::load(QStringLiteral("./link.so")).path, real);
}

#ifndef Q_OS_WIN
TEST(DriverLibrary, a_library_that_is_loaded_already_is_found_by_its_bare_name)
{
    const QFileInfo loaded(D2xxLibrary::load(QStringLiteral("virtual")).path);
    EXPECT_EQ(D2xxLibrary::load(loaded.fileName()).path, loaded.canonicalFilePath());
}
#endif

TEST(DriverLibrary, a_path_with_a_percent_sign_stands_in_every_text_as_it_is)
{
    const WorkingFolder folder;
    const QString path = QDir::toNativeSeparators(folder.filePath(QStringLiteral("50%1 %2.so")));
    folder.write(QStringLiteral("50%1 %2.so"), "not a library");
    const D2xxLibrary broken = D2xxLibrary::load(path);
    EXPECT_TRUE(broken.description().contains(path)) << qPrintable(broken.description());
    EXPECT_TRUE(broken.provenance().contains(path)) << qPrintable(broken.provenance());
}

TEST(DriverLibrary, without_a_setting_the_virtual_detector_is_never_used)
{
    EXPECT_FALSE(D2xxLibrary::load({}).isVirtual);
    EXPECT_FALSE(D2xxLibrary::load(QStringLiteral("ftdi")).isVirtual);
}
