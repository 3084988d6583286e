#pragma once

#include <QObject>

class QWidget;

/// Keeps the wheel from changing the value of a field that the operator does not work at: spin boxes, lists
/// and sliders without the focus leave it to what they lie on. GUI thread only.
class WheelGuard : public QObject
{
public:
    /// Guards the fields that `window` has now, and lives as long as it does.
    explicit WheelGuard(QWidget &window);

    bool eventFilter(QObject *watched, QEvent *event) override;
};
