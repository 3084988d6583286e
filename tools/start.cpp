#include "process/librarysearch.h"
#include "process/userfolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>

#include <cstdio>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

namespace {

/// There is no console to read it on when a menu started this.
void tell(const QString &problem)
{
#ifdef Q_OS_WIN
    MessageBoxW(nullptr, reinterpret_cast<LPCWSTR>(problem.utf16()), L"QV1K", MB_OK | MB_ICONERROR);
#else
    std::fprintf(stderr, "qv1k-start: %s\n", qUtf8Printable(problem));
#endif
}

/// Starts the program that lies beside this one; returns why it could not be started.
QString startWindow(const QString &folder)
{
    QProcess program;
    program.setProgram(QCoreApplication::applicationDirPath() + QStringLiteral("/qv1k"));
    program.setWorkingDirectory(folder);
    if (program.startDetached())
        return {};
    return QStringLiteral("%1 cannot be started: %2")
        .arg(QDir::toNativeSeparators(program.program()), program.errorString());
}

} // namespace

/// qv1k-start [--virtual]: the menu's way to the program. Starts it in the user's folder, which it makes at
/// the first start; with --virtual on the virtual detector, in a folder of its own. Exit status 0, or 1 after
/// it has told why the program could not be started.
int main(int argc, char **argv)
{
    restrictLibrarySearch();
    const QCoreApplication application(argc, argv);
    const bool virtualDetector = QCoreApplication::arguments().contains(QStringLiteral("--virtual"));
    const QString folder = UserFolder::path(virtualDetector);
    QString problem = UserFolder::prepare(folder, virtualDetector);
    if (problem.isEmpty())
        problem = startWindow(folder);
    if (problem.isEmpty())
        return 0;
    tell(problem);
    return 1;
}
