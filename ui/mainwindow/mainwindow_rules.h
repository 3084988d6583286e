#pragma once

#include "imaging/recordinglog.h"

#include <QImage>
#include <QString>
#include <QVariant>

/// The rules that the main window applies, free of any window. Pure functions.
namespace MainWindowRules {

/// What a device-change message of the operating system tells.
enum class DeviceChange { None, Arrival, Removal };

/// Reads a message of Windows: WM_DEVICECHANGE (0x0219) with its wParam; anything else is None.
[[nodiscard]] DeviceChange deviceChange(quint32 message, quintptr wParam);

/// A setting that is switched on: "true" in any case, or a number other than 0. Everything else is off.
[[nodiscard]] bool isSwitchedOn(const QVariant &setting);

/// Width in pixels of the empty part of the battery gauge at `level` percent of charge.
[[nodiscard]] int batteryGap(int gaugeWidth, int level);

/// The running average over the whole acquisition: "FPS: 12.34".
[[nodiscard]] QString frameRateText(qint64 frames, qint64 elapsedMs);

/// A quarter turn further: 90, 180, 270, 360, 90, ... Degrees; 360 is kept.
[[nodiscard]] double nextRotation(double rotation);

/// The picture as it is shown: turned by `rotation` degrees, smoothed, then mirrored. Shares the pixels of
/// `image` when there is nothing to do.
[[nodiscard]] QImage oriented(QImage image, double rotation, bool mirrorHorizontal, bool mirrorVertical);

/// The part of a frame that lies under `shown`, a part of its picture as oriented() turns it. x counts
/// columns, y rows.
[[nodiscard]] QRect partOfFrame(const QRect &shown, double rotation, bool mirrorHorizontal,
                                bool mirrorVertical);

/// What the box for the number of frames shows after an edit: the text, or the limit (1, 1000) it passed.
[[nodiscard]] QString clampedFrameCount(const QString &text);

/// What a recording has stored so far, or had when it ended: "12 of 50 frames stored, 1 file failed".
[[nodiscard]] QString recordingText(const RecordingResult &result);

/// What a press on save would do that may not be meant; empty when there is nothing to say. `anyForm`: one of
/// the forms is ticked. `exists`: a recording of that name does.
[[nodiscard]] QString recordingHint(bool anyForm, bool exists);

/// What is written beside recorded data.
struct AcquisitionSettings
{
    QString currentRange; ///< e.g. "150nA"; empty when none is chosen
    double vss = 0.0;     ///< volts, as the other three
    double vcom = 0.0;
    double von = 0.0;
    double voff = 0.0;
    double contrast = 1.0;
};

[[nodiscard]] QString parameterSummary(const AcquisitionSettings &settings);

} // namespace MainWindowRules
