#pragma once

#include <QSettings>
#include <QStringList>
#include <QVariant>

/// What the settings say of a key, as one value: an INI file that was edited by hand splits a text at its
/// commas, and they come back here. Blanks beside a comma do not.
[[nodiscard]] inline QVariant storedValue(const QSettings &settings, const QString &key,
                                          const QVariant &defaultValue = {})
{
    QVariant stored = settings.value(key, defaultValue);
    if (stored.typeId() == QMetaType::QStringList)
        return stored.toStringList().join(u',');
    return stored;
}
