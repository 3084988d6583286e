#include "tests/docs/document.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>

namespace {

int headingLevel(const QString &line)
{
    static const QRegularExpression marks(QStringLiteral("^(#{1,6}) "));
    return static_cast<int>(marks.match(line).capturedLength(1));
}

bool isFence(const QString &line)
{
    return line.startsWith(QLatin1String("```"));
}

} // namespace

namespace Document {

QString read(const QString &path)
{
    QFile file(QStringLiteral(QV1K_SOURCE_TREE "/") + path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return QString::fromUtf8(file.readAll());
}

QStringList blockLines(const QString &text, const QString &info)
{
    QStringList lines;
    bool isInside = false;
    for (const QString &line : text.split(u'\n')) {
        if (isFence(line))
            isInside = !isInside && line.mid(3) == info;
        else if (isInside && !line.trimmed().isEmpty())
            lines << line;
    }
    return lines;
}

QString withoutCode(const QString &text)
{
    static const QRegularExpression inlineCode(QStringLiteral("`[^`\n]*`"));
    QStringList kept;
    bool isFenced = false;
    for (const QString &line : text.split(u'\n')) {
        if (isFence(line))
            isFenced = !isFenced;
        else if (!isFenced && !line.startsWith(QLatin1String("    ")))
            kept << line;
    }
    return kept.join(u'\n').remove(inlineCode);
}

QString section(const QString &text, const QString &heading)
{
    QStringList lines;
    int level = 0;
    bool isFenced = false;
    for (const QString &line : text.split(u'\n')) {
        isFenced = isFenced != isFence(line);
        const int here = isFenced ? 0 : headingLevel(line);
        if (level > 0 && here > 0 && here <= level)
            break;
        if (level > 0)
            lines << line;
        else if (here > 0 && line.mid(here + 1) == heading)
            level = here;
    }
    EXPECT_FALSE(lines.isEmpty()) << "no section " << qPrintable(heading);
    return lines.join(u'\n');
}

QList<QStringList> tableRows(const QString &text)
{
    QList<QStringList> rows;
    const QStringList lines = text.split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const bool isHeading = i + 1 < lines.size() && lines[i + 1].startsWith(QLatin1String("|-"));
        if (!lines[i].startsWith(u'|') || lines[i].startsWith(QLatin1String("|-")) || isHeading)
            continue;
        QStringList cells = lines[i].mid(1).chopped(lines[i].endsWith(u'|') ? 1 : 0).split(u'|');
        for (QString &cell : cells)
            cell = cell.trimmed();
        rows << cells;
    }
    return rows;
}

QStringList columns(const QString &line)
{
    static const QRegularExpression gap(QStringLiteral(" {2,}"));
    return line.trimmed().split(gap);
}

QStringList words(const QString &text)
{
    static const QRegularExpression word(QStringLiteral("\"([^\"]*)\"|(\\S+)"));
    QStringList result;
    for (auto matches = word.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        result << (match.hasCaptured(2) ? match.captured(2) : match.captured(1));
    }
    return result;
}

QByteArray bytes(const QString &text)
{
    static const QRegularExpression group(
        QStringLiteral("\\[((?:[0-9A-F]{2} ?)+)(?:×(\\d+))?\\]|([0-9A-F]{2})"));
    QByteArray result;
    qsizetype understood = 0;
    for (auto matches = group.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        const QByteArray once = QByteArray::fromHex((match.captured(1) + match.captured(3)).toLatin1());
        result += once.repeated(match.hasCaptured(2) ? match.captured(2).toInt() : 1);
        understood += match.captured().remove(u' ').size();
    }
    EXPECT_EQ(understood, QString(text).remove(u' ').size()) << "not bytes: " << qPrintable(text);
    return result;
}

} // namespace Document
