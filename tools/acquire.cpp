#include "process/guardedapplication.h"
#include "process/librarysearch.h"
#include "process/terminationsignals.h"
#include "process/utf8console.h"
#include "tools/commands.h"
#include "tools/standardoutput.h"

#include <QCoreApplication>
#include <QLoggingCategory>

#include <cstdio>

namespace {

using Function = RunResult (*)(const CommandLine &line, StandardOutput &output);

Function functionOf(const CommandTable::Command &command)
{
    static const QHash<QString, Function> functions{
        {QStringLiteral("acquire"), &Commands::acquire}, {QStringLiteral("calibrate"), &Commands::calibrate},
        {QStringLiteral("list"), &Commands::list},       {QStringLiteral("info"), &Commands::info},
        {QStringLiteral("replay"), &Commands::replay},   {QStringLiteral("set"), &Commands::set}};
    return functions[QString::fromLatin1(command.name)];
}

} // namespace

/// qv1k-acquire: what a detector does without a window, first of all frames that are recorded.
int main(int argc, char **argv)
{
    restrictLibrarySearch();
    static const Utf8Console console; // static: some ways out of here leave no scope
    const GuardedApplication<QCoreApplication> application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("qv1k-acquire"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QV1K_VERSION));

    const CommandLine line(QCoreApplication::arguments());
    // The log repeats every line on the debug output; here standard error is for the one line that counts.
    if (!line.isSet(QStringLiteral("verbose")))
        QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));

    StandardOutput output;
    const RunResult result = functionOf(line.command())(line, output);
    if (!result.problem.isEmpty())
        std::fprintf(stderr, "qv1k-acquire: %s\n", qUtf8Printable(result.problem));
    TerminationSignals::endBySignal();
    output.endBySignal();
    return result.status;
}
