#include "tools/commandline/commandtexts.h"

#include <QCoreApplication>

#include <cstdio>

/// qv1k-acquire-texts man VERSION | bash: prints what is installed beside qv1k-acquire, from the table that
/// it goes by. Part of the build, not of the program.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QString text;
    if (arguments.value(1) == QStringLiteral("man"))
        text = CommandTexts::manualPage(arguments.value(2));
    else if (arguments.value(1) == QStringLiteral("bash"))
        text = CommandTexts::bashCompletion();
    std::fputs(qUtf8Printable(text), stdout);
    return text.isEmpty() ? 1 : 0;
}
