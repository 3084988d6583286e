#include "tests/architecture/sourcetree.h"

#include "tests/architecture/codeonly.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace {

void readFolder(const QDir &root, const QString &folder, SourceTree &tree)
{
    const QStringList leftBehind{QStringLiteral("build"), QStringLiteral("workspace")};
    const QStringList wanted{QStringLiteral("*.cpp"), QStringLiteral("*.h"), QStringLiteral("*.sh"),
                             QStringLiteral("*.cmake"), QStringLiteral("CMakeLists.txt")};
    const QDir here(root.filePath(folder));
    for (const QString &name : here.entryList(wanted, QDir::Files)) {
        QFile file(here.filePath(name));
        if (file.open(QIODevice::ReadOnly))
            tree.append(
                sourceFile(root.relativeFilePath(here.filePath(name)), QString::fromUtf8(file.readAll())));
    }
    for (const QString &name : here.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (!folder.isEmpty() || !leftBehind.contains(name))
            readFolder(root, root.relativeFilePath(here.filePath(name)), tree);
    }
}

} // namespace

SourceFile sourceFile(const QString &path, const QString &text)
{
    SourceFile file{.path = path, .lines = text.split(u'\n'), .code = {}};
    if (file.lines.last().isEmpty())
        file.lines.removeLast();
    if (path.endsWith(QLatin1String(".cpp")) || path.endsWith(QLatin1String(".h")))
        file.code = codeOnly(text).split(u'\n').mid(0, file.lines.size());
    return file;
}

SourceTree readSourceTree(const QString &root)
{
    SourceTree tree;
    readFolder(QDir(root), {}, tree);
    std::sort(tree.begin(), tree.end(),
              [](const SourceFile &a, const SourceFile &b) { return a.path < b.path; });
    return tree;
}
