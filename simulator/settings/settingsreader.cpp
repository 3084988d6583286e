#include "simulator/settings/settingsreader.h"

#include <QDebug>
#include <QRegularExpression>

namespace simulator {

QString SettingsReader::text(const QString &key)
{
    m_asked.insert(key);
    return m_file.value(key).toStringList().join(u',').trimmed();
}

QStringList SettingsReader::list(const QString &key, const QStringList &fallback)
{
    m_asked.insert(key);
    return m_file.contains(key) ? m_file.value(key).toStringList() : fallback;
}

bool SettingsReader::boolean(const QString &key, bool fallback)
{
    const QMap<QString, bool> words{{QStringLiteral("true"), true}, {QStringLiteral("false"), false},
                                    {QStringLiteral("yes"), true},  {QStringLiteral("no"), false},
                                    {QStringLiteral("on"), true},   {QStringLiteral("off"), false},
                                    {QStringLiteral("1"), true},    {QStringLiteral("0"), false}};
    return choice(key, fallback, words);
}

int SettingsReader::integer(const QString &key, int fallback, int lowest, int highest)
{
    const QString given = text(key);
    if (given.isEmpty())
        return fallback;
    bool fits = false;
    const int value = given.toInt(&fits);
    if (fits && value >= lowest && value <= highest)
        return value;
    complain(key, given, QStringLiteral("a whole number from %1 to %2").arg(lowest).arg(highest));
    return fallback;
}

double SettingsReader::number(const QString &key, double fallback, double lowest, double highest)
{
    const QString given = text(key);
    if (given.isEmpty())
        return fallback;
    bool fits = false;
    const double value = given.toDouble(&fits);
    if (fits && value >= lowest && value <= highest)
        return value;
    complain(key, given, QStringLiteral("a number from %1 to %2").arg(lowest).arg(highest));
    return fallback;
}

std::optional<qint64> SettingsReader::optional(const QString &key)
{
    const QString given = text(key);
    if (given.isEmpty())
        return std::nullopt;
    bool fits = false;
    const qint64 value = given.toLongLong(&fits);
    if (fits && value >= 0)
        return value;
    complain(key, given, QStringLiteral("a whole number, 0 or more"));
    return std::nullopt;
}

std::optional<quint16> SettingsReader::command(const QString &key)
{
    const QString given = text(key);
    if (given.isEmpty())
        return std::nullopt;
    static const QRegularExpression fourDigits(
        QRegularExpression::anchoredPattern(QStringLiteral("[0-9A-Fa-f]{4}")));
    if (fourDigits.match(given).hasMatch()) // a sign or 0x would be a number, too, and mean another command
        return given.toUShort(nullptr, 16);
    complain(key, given, QStringLiteral("class and code of a command in four hexadecimal digits, as 03A0"));
    return std::nullopt;
}

void SettingsReader::complain(const QString &key, const QString &value, const QString &advice) const
{
    qWarning().noquote() << QStringLiteral("%1: %2=%3 is not used: %4").arg(m_path, key, value, advice);
}

void SettingsReader::complainAboutUnknownKeys() const
{
    const QStringList keys = m_file.allKeys();
    for (const QString &key : keys) {
        if (!m_asked.contains(key))
            qWarning().noquote() << QStringLiteral("%1: there is no setting %2").arg(m_path, key);
    }
}

} // namespace simulator
