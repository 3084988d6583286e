#include "tests/tools/acquirerun.h"

#include <QDir>

TEST_F(Acquire, the_first_command_is_what_is_meant_without_one)
{
    detector("");
    const QStringList options{QStringLiteral("--library"), QStringLiteral("virtual"),
                              QStringLiteral("--name"),    QStringLiteral("T"),
                              QStringLiteral("--pattern"), QStringLiteral("2"),
                              QStringLiteral("--output")};
    run(options + QStringList{QStringLiteral("without")});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    run(QStringList{QStringLiteral("acquire")} + options + QStringList{QStringLiteral("with")});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    const QByteArray picture = folder.read(QStringLiteral("without/T/T_pic1.png"));
    EXPECT_FALSE(picture.isEmpty());
    EXPECT_EQ(picture, folder.read(QStringLiteral("with/T/T_pic1.png")));
}

TEST_F(Acquire, what_is_wrong_with_an_argument_is_told_by_its_name)
{
    const QList<std::pair<QStringList, const char *>> wrong{
        {{QStringLiteral("--frames")}, "Missing value after '--frames'."},
        {{QStringLiteral("--data=1")}, "Unexpected value after '--data'."},
        {{QStringLiteral("--this"), QStringLiteral("--that")}, "Unknown options: this, that."},
        {{QStringLiteral("--frames=")}, "--frames takes a whole number from 1 to 1000000, not \"\""},
        {{QStringLiteral("--"), QStringLiteral("--help")}, "unexpected argument \"--help\""}};
    for (const auto &[arguments, text] : wrong) {
        run(arguments);
        EXPECT_EQ(exitCode, 2);
        EXPECT_EQ(errors,
                  QStringLiteral("qv1k-acquire: %1 (--help lists the options)\n").arg(QLatin1String(text)));
    }
    EXPECT_FALSE(QDir(folder.path()).exists(QStringLiteral("Logs"))) << "nothing was opened";
}

TEST_F(Acquire, the_last_of_several_values_counts)
{
    run({QStringLiteral("--frames"), QStringLiteral("3"), QStringLiteral("--frames=0")});
    EXPECT_EQ(exitCode, 2);
    EXPECT_TRUE(errors.contains(QStringLiteral("not \"0\""))) << qPrintable(errors);
}
