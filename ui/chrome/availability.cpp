#include "ui/chrome/availability.h"

#include <QPointer>
#include <QVariant>
#include <QWidget>

namespace {

constexpr char ownToolTip[] = "ownToolTip";
constexpr char focusStandIn[] = "focusStandIn";

} // namespace

void Availability::withhold(QWidget &control, const QString &reason)
{
    if (control.isEnabled()) {
        const QWidget *window = control.window();
        const bool hadFocus = window->focusWidget() == &control;
        control.setProperty(ownToolTip, control.toolTip());
        control.setEnabled(false);
        if (hadFocus)
            control.setProperty(focusStandIn, QVariant::fromValue(QPointer<QWidget>(window->focusWidget())));
    }
    const QString own = control.property(ownToolTip).toString();
    control.setToolTip(own.isEmpty() ? reason : own + u'\n' + reason);
}

void Availability::grant(QWidget &control)
{
    if (control.isEnabled())
        return;
    const QVariant standIn = control.property(focusStandIn);
    control.setToolTip(control.property(ownToolTip).toString());
    control.setProperty(ownToolTip, QVariant());
    control.setProperty(focusStandIn, QVariant());
    control.setEnabled(true);
    if (standIn.isValid() && control.window()->focusWidget() == standIn.value<QPointer<QWidget>>())
        control.setFocus();
}
