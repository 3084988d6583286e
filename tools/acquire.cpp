#include "process/guardedapplication.h"
#include "process/librarysearch.h"
#include "process/terminationsignals.h"
#include "process/utf8console.h"
#include "tools/acquireoptions.h"
#include "tools/acquisitionrun.h"
#include "tools/standardoutput.h"

#include <QCoreApplication>
#include <QLoggingCategory>

#include <cstdio>

/// qv1k-acquire: takes frames from a detector without a window and records them.
int main(int argc, char **argv)
{
    restrictLibrarySearch();
    static const Utf8Console console; // static: some ways out of here leave no scope
    const GuardedApplication<QCoreApplication> application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("qv1k-acquire"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QV1K_VERSION));

    const CommandLine line(QCoreApplication::arguments());
    const AcquireOptions options = AcquireOptions::of(line);
    // The log repeats every line on the debug output; here standard error is for the one line that counts.
    if (!options.verbose)
        QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));

    StandardOutput output;
    const AcquisitionRun::Result result = AcquisitionRun::run(options, output);
    if (!result.problem.isEmpty())
        std::fprintf(stderr, "qv1k-acquire: %s\n", qUtf8Printable(result.problem));
    TerminationSignals::endBySignal();
    output.endBySignal();
    return result.status;
}
