#pragma once

class QApplication;
class QPalette;

/// The light colours that the window's style sheets assume, whatever the desktop's theme.
namespace LightPalette {

[[nodiscard]] QPalette palette();

/// Gives the application, its tool tips, message boxes and choosers the light colours. Only the desktop's
/// own dialogs would follow its theme: they are replaced by the toolkit's.
void apply(QApplication &application);

} // namespace LightPalette
