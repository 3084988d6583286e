#pragma once

#include <QSize>

class QDialog;

/// Dialogs on screens that are smaller than they are.
namespace ScreenRoom {

/// How large a dialog may be with the frame that the desktop puts around it, on the screen of its parent.
[[nodiscard]] QSize of(const QDialog &dialog);

/// A dialog that needs more than `room` gets that size, and what is in it is scrolled. The others stay as
/// they are. To be called before it is shown.
void keepWithin(QDialog &dialog, QSize room);

} // namespace ScreenRoom
