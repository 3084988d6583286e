#include "imaging/pixelkernel.h"

#include <benchmark/benchmark.h>
#include <opencv2/core/utility.hpp>

#include <QApplication>
#include <QLoggingCategory>

#include <string>

namespace {

/// What the figures depend on, told above them.
void tellWhatIsMeasured()
{
    benchmark::AddCustomContext("kernel", PixelKernel::variants().back().name);
    benchmark::AddCustomContext("workers", std::to_string(cv::getNumThreads()));
}

} // namespace

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    tellWhatIsMeasured();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
