#pragma once

#include <QMap>
#include <QSet>
#include <QSettings>
#include <QString>
#include <QStringList>

#include <optional>

namespace simulator {

/// Reads one settings file value by value. A value that does not fit leaves a line on the debug output that
/// names the file, the key and what would fit, and the fallback is returned. Key names heed upper and lower
/// case.
class SettingsReader
{
public:
    explicit SettingsReader(const QString &path) : m_path(path), m_file(path, QSettings::IniFormat) {}

    [[nodiscard]] QString text(const QString &key);
    [[nodiscard]] QStringList list(const QString &key, const QStringList &fallback);
    [[nodiscard]] bool boolean(const QString &key, bool fallback);
    [[nodiscard]] int integer(const QString &key, int fallback, int lowest, int highest);
    [[nodiscard]] double number(const QString &key, double fallback, double lowest, double highest);
    /// A count of 0 or more; none when the key is absent or empty.
    [[nodiscard]] std::optional<qint64> optional(const QString &key);
    /// Class and code of a command in four hexadecimal digits; none when the key is absent or empty.
    [[nodiscard]] std::optional<quint16> command(const QString &key);

    template <typename Value>
    [[nodiscard]] Value choice(const QString &key, Value fallback, const QMap<QString, Value> &choices)
    {
        const QString given = text(key).toLower();
        if (given.isEmpty())
            return fallback;
        if (const auto found = choices.constFind(given); found != choices.constEnd())
            return *found;
        complain(key, given, QStringLiteral("choose one of ") + choices.keys().join(u", "));
        return fallback;
    }

    /// The values of a list; a word that is none of the choices is left out. Words heed upper and lower case.
    template <typename Value>
    [[nodiscard]] QSet<Value> choices(const QString &key, const QMap<QString, Value> &choices)
    {
        QSet<Value> result;
        const QStringList given = list(key, {});
        for (const QString &entry : given) {
            const QString word = entry.trimmed();
            if (const auto found = choices.constFind(word); found != choices.constEnd())
                result.insert(*found);
            else if (!word.isEmpty())
                complain(key, word, QStringLiteral("choose of ") + choices.keys().join(u", "));
        }
        return result;
    }

    void complain(const QString &key, const QString &value, const QString &advice) const;
    /// Call it after every known key was asked for.
    void complainAboutUnknownKeys() const;

private:
    QString m_path;
    QSettings m_file;
    QSet<QString> m_asked;
};

} // namespace simulator
