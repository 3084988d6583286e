#include "process/guardedapplication.h"
#include "process/librarysearch.h"
#include "process/processend.h"
#include "process/terminationsignals.h"
#include "ui/chrome/lightpalette.h"
#include "ui/framelesshelper.h"
#include "ui/mainwindow.h"
#include "ui/mainwindow/stylesheets.h"

#include <QApplication>
#include <QSessionManager>

namespace {

/// The window's life, until it is closed or the system asks the process to end.
int run(QApplication &application)
{
    const TerminationSignals termination;
    mainwindow window;
    application.installNativeEventFilter(&window);
    auto *helper = new FramelessHelper(&window);
    application.setStyleSheet(QString::fromLatin1(StyleSheets::application));

    helper->attachWindow(&window);
    helper->setTitleBarHeight(40);
    helper->setEdgeWidth(3);
    helper->setDragEnabled(true);
    helper->setResizeEnabled(true);
    helper->setRubberBandForDrag(false);
    helper->setRubberBandForResize(false);

    window.setAttribute(Qt::WA_TranslucentBackground);
    window.setWindowFlags(window.windowFlags() | Qt::FramelessWindowHint);
    QObject::connect(&termination, &TerminationSignals::requested, &window, [&window] {
        window.close();
        QApplication::exit(); // from within a dialog too
    });
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &window,
                     [&window](QSessionManager &session) {
                         if (session.allowsInteraction() && !window.agreesToClose())
                             session.cancel();
                     });
    window.show();
    return QApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    restrictLibrarySearch();
    // The interface's colours assume a light palette, whatever the desktop's theme.
#ifdef Q_OS_WIN
    qputenv("QT_QPA_PLATFORM", "windows:darkmode=0");
#endif
    int status = 0;
    {
        GuardedApplication<QApplication> application(argc, argv);
        QCoreApplication::setApplicationVersion(QStringLiteral(QV1K_VERSION)); // told beside recorded files
#ifndef Q_OS_WIN
        LightPalette::apply(application);
#endif
        status = run(application);
    }
    TerminationSignals::endBySignal();
    return endProcess(status);
}
