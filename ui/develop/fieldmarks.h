#pragma once

#include <QString>

class QLineEdit;

/// What the engineering dialog tells of a field whose text does not go over the cable as it stands there.
namespace FieldMarks {

/// Why the text of field `number` is not sent as it stands; empty when it is. An empty text has a reason too.
[[nodiscard]] QString problem(int number, const QString &text);

/// Shows the problem of field `number` in its looks and its tool tip, which names the number in every case:
/// warnings of the debug output go by it. To be called whenever the text changes. An empty field says in its
/// own place that it is left out.
void show(QLineEdit &edit, int number);

} // namespace FieldMarks
