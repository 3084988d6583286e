// The names under which the fuzzer looks for a target.

#include "tests/fuzz/target.h"

#ifdef QV1K_FUZZ_GUI
#include <QApplication>
using Application = QApplication;
#else
#include <QCoreApplication>
using Application = QCoreApplication;
#endif

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static Application application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uchar *data, std::size_t size)
{
    Fuzz::tryInput(QByteArrayView(data, static_cast<qsizetype>(size)));
    return 0;
}
