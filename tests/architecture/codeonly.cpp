#include "tests/architecture/codeonly.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

/// Where a comment or literal that begins at a place ends, and how much of it at both ends is code.
struct Passage
{
    qsizetype length = 0; ///< 0: neither comment nor literal
    qsizetype kept = 0;
};

Passage passageAt(const QString &text, qsizetype place)
{
    // A line comment, a comment, a raw literal, a literal, a character; in this order.
    static const QRegularExpression passage(
        QStringLiteral(
            R"re(//[^\n]*|/\*.*?\*/|R"([^ ()\\]{0,16})\(.*?\)\1"|("(?:\\.|[^"\\\n])*")|('(?:\\.|[^'\\\n])+'))re"),
        QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = passage.match(text, place, QRegularExpression::NormalMatch,
                                                        QRegularExpression::AnchorAtOffsetMatchOption);
    const bool literal = match.hasCaptured(2) || match.hasCaptured(3);
    return {.length = match.capturedLength(), .kept = literal ? 1 : 0};
}

/// A quotation mark between digits parts them; an R behind a letter begins no raw literal.
bool continuesAWord(const QString &text, qsizetype place)
{
    return (text[place] == u'\'' || text[place] == u'R') && place > 0 && text[place - 1].isLetterOrNumber();
}

} // namespace

QString codeOnly(const QString &text)
{
    static const QString openers = QStringLiteral("/\"'R");
    QString code = text;
    for (qsizetype place = 0; place < text.size(); ++place) {
        if (!openers.contains(text[place]) || continuesAWord(text, place))
            continue;
        const Passage passage = passageAt(text, place);
        for (qsizetype n = passage.kept; n < passage.length - passage.kept; ++n) {
            if (text[place + n] != u'\n')
                code[place + n] = u' ';
        }
        place += std::max<qsizetype>(0, passage.length - 1);
    }
    return code;
}
