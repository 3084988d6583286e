// The kept inputs of a target, without a fuzzer: in every build, with every compiler.

#include "tests/fuzz/target.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <vector>

TEST(Corpus, every_input_of_it_keeps_the_rules)
{
    const QDir folder(QStringLiteral(QV1K_FUZZ_CORPUS));
    const QStringList names = folder.entryList(QDir::Files, QDir::Name);
    ASSERT_FALSE(names.isEmpty());
    for (const QString &name : names) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(file.errorString());
        const QByteArray content = file.readAll();
        std::fprintf(stderr, "%s\n",
                     qPrintable(name)); // a broken rule ends the process: the last name is the culprit's
        // No byte more than the input: a QByteArray ends with one of its own.
        const std::vector<char> exact(content.begin(), content.end());
        Fuzz::tryInput(QByteArrayView(exact.data(), static_cast<qsizetype>(exact.size())));
    }
}

TEST(Corpus, an_input_of_nothing_keeps_the_rules)
{
    Fuzz::tryInput(QByteArrayView("", qsizetype{0}));
}
