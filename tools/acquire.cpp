#include "device/portmanager.h"
#include "log/logmanager.h"
#include "tools/acquireoptions.h"
#include "tools/acquisitionrun.h"

#include <QCoreApplication>
#include <QLoggingCategory>

#include <cstdio>

/// qv1k-acquire: takes frames from the first detector without a window and records them.
int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("qv1k-acquire"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QV1K_VERSION));

    const AcquireOptions options = AcquireOptions::fromArguments(application.arguments());
    // The log repeats every line on the debug output; here standard error is for the one line that counts.
    if (!options.verbose)
        QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));

    const QString problem = AcquisitionRun::run(options);
    if (problem.isEmpty())
        return 0;
    std::fprintf(stderr, "qv1k-acquire: %s\n", qPrintable(problem));
    return 1;
}
