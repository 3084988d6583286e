#include "imaging/recordingfiles.h"

#include <QDateTime>
#include <QStringList>

#include <algorithm>

namespace {

/// What the system does not take in the name of a file, and what any takes for the way to it.
bool isRefused(QChar character)
{
#ifdef Q_OS_WIN
    const QString refused = QStringLiteral("<>:\"/\\|?*");
#else
    const QString refused = QStringLiteral("/\\");
#endif
    return character.category() == QChar::Other_Control || refused.contains(character);
}

/// Windows takes these for devices, in any case and with any ending.
bool isReserved(const QString &name)
{
    static const QStringList devices{QStringLiteral("CON"),    QStringLiteral("PRN"),
                                     QStringLiteral("AUX"),    QStringLiteral("NUL"),
                                     QStringLiteral("CONIN$"), QStringLiteral("CONOUT$")};
    static const QStringList ports{QStringLiteral("COM"), QStringLiteral("LPT")};
    const QString stem = name.section(u'.', 0, 0).trimmed().toUpper();
    if (devices.contains(stem))
        return true;
    return stem.size() == 4 && ports.contains(stem.first(3)) &&
           QStringLiteral("123456789¹²³").contains(stem[3]);
}

/// The typed name without what must not get into a file's name; what is harmless stays as it is.
QString cleaned(QString name)
{
    name.removeIf(isRefused);
#ifdef Q_OS_WIN
    while (name.endsWith(u'.') || name.endsWith(u' ')) // the system would leave them out
        name.chop(1);
#endif
    const bool says = std::any_of(name.cbegin(), name.cend(),
                                  [](QChar character) { return character != u'.' && !character.isSpace(); });
    if (!says)
        return {};
    return isReserved(name) ? u'_' + name : name;
}

} // namespace

QString RecordingFiles::nameFor(const QString &typed, const QDateTime &now)
{
    const QString name = cleaned(typed);
    return name.isEmpty() ? now.toString(QStringLiteral("yyyyMMdd_hhmmss")) : name;
}

QStringList RecordingFiles::stacks(const RecordingForms &forms) const
{
    QStringList paths;
    if (forms.tiff)
        paths << tiff();
    if (forms.npy)
        paths << npy();
    if (forms.raw)
        paths << raw();
    return paths;
}
