#pragma once

class QString;
class QWidget;

/// Controls that cannot be used for a while, and say why. GUI thread.
namespace Availability {

/// Disables the control; its tool tip tells the reason below its own text. The focus, when the control had
/// it, goes to the next one and comes back with grant(), unless the operator has moved it meanwhile.
void withhold(QWidget &control, const QString &reason);

/// Enables the control and gives it its own tool tip back.
void grant(QWidget &control);

} // namespace Availability
