#pragma once

#include "process/exceptions.h"

class QEvent;
class QObject;

/// An application that goes on when an event handler or a slot throws: the exception is logged. `Application`
/// is QApplication or QCoreApplication.
template <typename Application>
class GuardedApplication : public Application
{
public:
    using Application::Application;

    bool notify(QObject *receiver, QEvent *event) override
    {
        try {
            return Application::notify(receiver, event);
        } catch (...) {
            reportException();
            return false;
        }
    }
};
