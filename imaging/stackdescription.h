#pragma once

#include "imaging/recordingfacts.h"

#include <QJsonObject>
#include <QString>

/// The texts and JSON objects that tell how a file of all frames is to be read, and where it comes from.
/// Pure functions, any thread.
namespace StackDescription {

/// Program, detector and settings; null for what is not known.
[[nodiscard]] QJsonObject ofRecording(const RecordingFacts &facts);

/// What ofRecording() told, as far as it holds for the same frames once more: whether grey levels were
/// calibrated does not.
[[nodiscard]] RecordingFacts factsOf(const QJsonObject &description);

/// Shape, type, unit and order of the pixels of a file that holds currents.
[[nodiscard]] QJsonObject ofCurrents(const QString &format, int frames);

/// Milliseconds since 1970 as ISO 8601, UTC.
[[nodiscard]] QString timeText(qint64 milliseconds);

} // namespace StackDescription
