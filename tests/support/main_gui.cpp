#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char **argv)
{
    // Also when the tests are listed during the build, where there is no display.
    qputenv("QT_QPA_PLATFORM", QV1K_TEST_PLATFORM);
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
