#include "device/detectornames.h"

#include <algorithm>

DetectorNames::DetectorNames(const QString &names)
{
    QStringList given;
    const QStringList parts = names.split(u',');
    for (const QString &name : parts) {
        if (const QString trimmed = name.trimmed(); !trimmed.isEmpty())
            given << trimmed;
    }
    if (!given.isEmpty())
        m_names = given;
}

bool DetectorNames::include(const d2xx::DeviceRecord &record) const
{
    const auto textOf = [](const auto &field) {
        const std::string_view text = d2xx::textOf(field);
        return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    };
    const QString description = textOf(record.description);
    const QString serialNumber = textOf(record.serialNumber);
    return std::any_of(m_names.begin(), m_names.end(), [&](const QString &name) {
        return description.startsWith(name) || serialNumber.startsWith(name);
    });
}
