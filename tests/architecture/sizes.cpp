#include "tests/architecture/sizes.h"

#include <QRegularExpression>

namespace {

qsizetype indentOf(const QString &line)
{
    qsizetype indent = 0;
    while (indent < line.size() && line[indent] == u' ')
        ++indent;
    return indent;
}

/// Whether a line is the end of what stands before a declaration, not the beginning of the declaration.
bool endsBefore(const QString &line, qsizetype indent)
{
    const QString text = line.trimmed();
    if (text.isEmpty() || text.startsWith(u'#') || text.startsWith(u'}') || text.endsWith(u';'))
        return true;
    const qsizetype own = indentOf(line);
    return own < indent || (own == indent && (text.endsWith(u'{') || text.endsWith(u':')));
}

/// The line on which the declaration begins whose opening brace stands alone on a line; the brace's own when
/// there is none, as before a plain block.
qsizetype beginOfDeclaration(const QStringList &code, qsizetype brace)
{
    const qsizetype indent = indentOf(code[brace]);
    qsizetype line = brace;
    while (line > 0 && !endsBefore(code[line - 1], indent))
        --line;
    return line;
}

bool isFunction(const QString &declaration)
{
    static const QRegularExpression type(
        QStringLiteral(R"(^\s*(template\s*<.*>\s*)?(class|struct|union|enum|namespace)\b[^()]*$)"));
    return declaration.contains(u'(') && !type.match(declaration).hasMatch();
}

qsizetype endOfBlock(const QStringList &code, qsizetype brace)
{
    const QString closing = QString(indentOf(code[brace]), u' ') + u'}';
    for (qsizetype line = brace + 1; line < code.size(); ++line) {
        if (code[line].startsWith(closing))
            return line;
    }
    return code.size() - 1;
}

} // namespace

QList<Finding> longFiles(const SourceTree &tree)
{
    QList<Finding> findings;
    for (const SourceFile &file : tree) {
        if (file.lines.size() > mostLinesOfAFile)
            findings.append({file.path, mostLinesOfAFile + 1,
                             QStringLiteral("a file has at most %1 lines, this one has %2")
                                 .arg(mostLinesOfAFile)
                                 .arg(file.lines.size())});
    }
    return findings;
}

QList<Finding> longFunctions(const SourceTree &tree)
{
    QList<Finding> findings;
    for (const SourceFile &file : tree) {
        for (qsizetype brace = 0; brace < file.code.size(); ++brace) {
            if (file.code[brace].trimmed() != QLatin1String("{"))
                continue;
            const qsizetype begin = beginOfDeclaration(file.code, brace);
            const qsizetype lines = endOfBlock(file.code, brace) - begin + 1;
            if (lines > mostLinesOfAFunction && isFunction(file.code.mid(begin, brace - begin).join(u' ')))
                findings.append({file.path, static_cast<int>(begin + 1),
                                 QStringLiteral("a function has at most %1 lines, this one has %2")
                                     .arg(mostLinesOfAFunction)
                                     .arg(lines)});
        }
    }
    return findings;
}
