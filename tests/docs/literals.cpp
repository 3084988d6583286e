#include "tests/docs/literals.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

struct Literal
{
    QString text;
    bool isTranslated = false;
};

QString unescaped(QString text)
{
    text.replace(QLatin1String("\\n"), QLatin1String("\n"));
    text.replace(QLatin1String("\\t"), QLatin1String("\t"));
    static const QRegularExpression escape(QStringLiteral("\\\\(.)"));
    return text.replace(escape, QStringLiteral("\\1"));
}

bool isOnlySpace(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.isSpace(); });
}

QList<Literal> literalsOf(const QString &source)
{
    // A line comment, a comment, an include, a raw literal, a character; and at last a literal.
    static const QRegularExpression passage(
        QStringLiteral(
            R"re(//[^\n]*|/\*.*?\*/|#include[^\n]*|R"([^ ()\\]{0,16})\(.*?\)\1"|'(?:\\.|[^'\\\n])'|"((?:\\.|[^"\\\n])*)")re"),
        QRegularExpression::DotMatchesEverythingOption);
    QList<Literal> literals;
    qsizetype lastEnd = -1;
    for (auto matches = passage.globalMatch(source); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        if (!match.hasCaptured(2))
            continue;
        const QStringView before = QStringView(source).first(match.capturedStart());
        if (lastEnd >= 0 && isOnlySpace(before.sliced(lastEnd)))
            literals.last().text += unescaped(match.captured(2));
        else
            literals.append({unescaped(match.captured(2)), before.trimmed().endsWith(QLatin1String("tr("))});
        lastEnd = match.capturedEnd();
    }
    return literals;
}

} // namespace

QStringList stringLiterals(const QString &source)
{
    QStringList texts;
    for (const Literal &literal : literalsOf(source))
        texts << literal.text;
    return texts;
}

QStringList translatedLiterals(const QString &source)
{
    QStringList texts;
    for (const Literal &literal : literalsOf(source)) {
        if (literal.isTranslated)
            texts << literal.text;
    }
    return texts;
}

QStringList fixedPieces(const QString &text)
{
    static const QRegularExpression placeholder(QStringLiteral("…|%[0-9ds]|\n"));
    QStringList pieces;
    for (const QString &piece : text.split(placeholder)) {
        const auto says = [](QChar c) {
            return c.isLetterOrNumber();
        };
        const auto first = std::find_if(piece.begin(), piece.end(), says);
        if (std::none_of(first, piece.end(), [](QChar c) { return c.isLetter(); }))
            continue;
        const auto last = std::find_if(piece.rbegin(), piece.rend(), says).base();
        pieces << QString(first, last - first);
    }
    return pieces;
}
