#include "tests/architecture/numbers.h"

#include <QRegularExpression>

namespace {

QRegularExpression pattern(const QString &text)
{
    static const QString number = QStringLiteral(
        R"(\b(?:std::)?(?:bool|char|uchar|short|ushort|int|uint|long|ulong|unsigned|float|double|qreal|qsizetype|)"
        R"(q?u?int(?:8|16|32|64)(?:_t)?|size_t|ptrdiff_t|BYTE|UCHAR|WORD|USHORT|DWORD|ULONG)\b)");
    return QRegularExpression(QString(text).replace(QLatin1String("NUMBER"), number));
}

template <typename Breaks>
QList<Finding> linesThat(const Breaks &breaks, const SourceTree &tree, const QString &sentence)
{
    QList<Finding> findings;
    for (const SourceFile &file : tree) {
        for (qsizetype n = 0; n < file.code.size(); ++n) {
            if (breaks(file, file.code[n]))
                findings.append({file.path, static_cast<int>(n + 1), sentence});
        }
    }
    return findings;
}

bool usesQtIntegers(const SourceFile &file)
{
    static const QRegularExpression qt(QStringLiteral(R"(\bqu?int(?:8|16|32|64)\b)"));
    return qt.match(file.code.join(u'\n')).hasMatch();
}

} // namespace

QList<Finding> castsOfAnotherStyle(const SourceTree &tree)
{
    // Not in a function's type, as in std::function<int(int)> or int (*)(int), and no operator.
    static const QRegularExpression call =
        pattern(QStringLiteral(R"((?<!<)(?<!operator )(?<!::)NUMBER\((?!\)|[\w: ]*\*\w*\)\())"));
    // Not the parameter of a declaration, nor what sizeof measures.
    static const QRegularExpression old = pattern(
        QStringLiteral(R"((?:^|[=,(+\-*/%<>&|?:!\[{;]|\breturn) *\((?:const )?NUMBER *[*&]?\) *[\w(~+\-])"));
    const auto breaks = [](const SourceFile &, const QString &line) {
        return call.match(line).hasMatch() || old.match(line).hasMatch();
    };
    return linesThat(breaks, tree, QStringLiteral("a number is converted by static_cast<T>(x)"));
}

QList<Finding> integersOfAnotherStyle(const SourceTree &tree)
{
    static const QRegularExpression bare(
        QStringLiteral(R"((?<!std::)\b(?:size_t|ptrdiff_t|u?int(?:8|16|32|64|ptr)_t)\b)"));
    static const QRegularExpression alone(QStringLiteral(R"(\bunsigned\b(?! (?:int|char|short|long)\b))"));
    static const QRegularExpression standard(QStringLiteral(R"(\bstd::u?int(?:8|16|32|64)_t\b)"));
    const auto isBare = [](const SourceFile &, const QString &line) {
        return bare.match(line).hasMatch();
    };
    const auto isAlone = [](const SourceFile &, const QString &line) {
        return alone.match(line).hasMatch();
    };
    const auto isBesideQts = [](const SourceFile &file, const QString &line) {
        return standard.match(line).hasMatch() && usesQtIntegers(file);
    };
    return linesThat(isBare, tree, QStringLiteral("the standard's integers are named with std::")) +
           linesThat(isAlone, tree, QStringLiteral("unsigned is not written alone")) +
           linesThat(
               isBesideQts, tree,
               QStringLiteral("one file has one name for an integer of 32 bits: quint32 or std::uint32_t"));
}
