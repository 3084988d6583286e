#include "tests/docs/links.h"

#include "tests/docs/document.h"

#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QRegularExpression>

namespace {

QString readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QString anchorOf(const QString &heading)
{
    static const QRegularExpression dropped(QStringLiteral("[^\\p{L}\\p{N} _-]"),
                                            QRegularExpression::UseUnicodePropertiesOption);
    return heading.toLower().remove(dropped).replace(u' ', u'-');
}

bool leadsSomewhere(const QString &root, const QString &document, const QString &target)
{
    const QString file = target.section(u'#', 0, 0);
    const QString path =
        file.isEmpty() ? root + u'/' + document : QFileInfo(root + u'/' + document).path() + u'/' + file;
    if (!QFileInfo::exists(path))
        return false;
    return !target.contains(u'#') || Links::anchors(readFile(path)).contains(target.section(u'#', 1));
}

} // namespace

namespace Links {

QStringList targets(const QString &text)
{
    static const QRegularExpression link(QStringLiteral("\\[[^\\]]*\\]\\(([^)\\s]+)\\)"));
    QStringList found;
    const QString prose = Document::withoutCode(text);
    for (auto matches = link.globalMatch(prose); matches.hasNext();)
        found << matches.next().captured(1);
    return found;
}

QStringList anchors(const QString &text)
{
    static const QRegularExpression heading(QStringLiteral("^#{1,6} +(.*?) *$"));
    QStringList found;
    QMap<QString, int> times;
    bool isFenced = false;
    for (const QString &line : text.split(u'\n')) {
        isFenced = isFenced != line.startsWith(QLatin1String("```"));
        const QRegularExpressionMatch match = heading.match(line);
        if (isFenced || !match.hasMatch())
            continue;
        const QString anchor = anchorOf(match.captured(1));
        const int before = times[anchor]++;
        found << (before == 0 ? anchor : QStringLiteral("%1-%2").arg(anchor).arg(before));
    }
    return found;
}

QStringList broken(const QString &root, const QString &document)
{
    static const QRegularExpression elsewhere(QStringLiteral("^[a-z]+:"));
    QStringList found;
    for (const QString &target : targets(readFile(root + u'/' + document))) {
        if (!elsewhere.match(target).hasMatch() && !leadsSomewhere(root, document, target))
            found << target;
    }
    return found;
}

} // namespace Links
