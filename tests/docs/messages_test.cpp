// The manual's tables of messages against the texts in the sources: none is missing, none is stale.

#include "tests/docs/document.h"
#include "tests/docs/literals.h"

#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>

namespace {

/// Where a person's texts come from. The command line tool explains itself in English on the console.
const QStringList folders{"app", "log", "process", "device", "imaging", "ui", "ftdi"};

/// Literals that look like a message and are none.
const QStringList noMessages{"yyyy-MM-dd HH:mm:ss",
                             "yyyy:MM:dd hh:mm:ss",               // in a recorded file
                             "it is written by a signal handler", // to who compiles
                             "the tables hold four decimals",     // to who compiles
                             "/QV1K virtual detector",            // a folder
                             "Current Range:%1",                  // in a recorded file
                             "Contrast Ratio: %1 \n",             // in a recorded file
                             "color: #e60012; border: 1px solid #e60012;"};

/// What tells of arithmetic that is not exact, to who compiles.
const QString compilersFile = QStringLiteral("exactarithmetic.h");

QStringList sources()
{
    QStringList texts;
    for (const QString &folder : folders) {
        QDirIterator files(QStringLiteral(QV1K_SOURCE_TREE "/") + folder, {"*.cpp", "*.h"}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            if (file.fileName().endsWith(compilersFile))
                continue;
            EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(file.fileName());
            texts << QString::fromUtf8(file.readAll());
        }
    }
    return texts;
}

/// Two words side by side, or a Chinese character.
bool looksLikeAMessage(const QString &literal)
{
    static const QRegularExpression words(QStringLiteral("[A-Za-z]{2,} [A-Za-z%]|\\p{Han}"),
                                          QRegularExpression::UseUnicodePropertiesOption);
    return words.match(literal).hasMatch();
}

/// Texts that a person can meet.
QStringList messages()
{
    QStringList found;
    for (const QString &source : sources()) {
        found << translatedLiterals(source);
        for (const QString &literal : stringLiterals(source)) {
            if (looksLikeAMessage(literal) && !noMessages.contains(literal))
                found << literal;
        }
    }
    return found;
}

QSet<QString> piecesOf(const QStringList &texts)
{
    QSet<QString> pieces;
    for (const QString &text : texts) {
        for (const QString &piece : fixedPieces(text))
            pieces << piece;
    }
    return pieces;
}

/// What the first column of the manual's tables of messages has between ` marks.
QStringList tabled()
{
    static const QRegularExpression code(QStringLiteral("`([^`]+)`"));
    const QString manual = Document::read(QStringLiteral("docs/manual.md"));
    QStringList texts;
    for (const QStringList &row :
         Document::tableRows(Document::section(manual, QStringLiteral("Messages")))) {
        for (auto matches = code.globalMatch(row.first()); matches.hasNext();)
            texts << matches.next().captured(1);
    }
    return texts;
}

} // namespace

TEST(Messages, every_text_that_a_person_can_meet_stands_in_the_manual)
{
    const QSet<QString> known = piecesOf(tabled());
    const QStringList all = messages();
    ASSERT_GT(all.size(), 50);
    for (const QString &message : all) {
        for (const QString &piece : fixedPieces(message))
            EXPECT_TRUE(known.contains(piece)) << qPrintable(piece) << "\n  of: " << qPrintable(message);
    }
}

TEST(Messages, the_manual_lists_none_that_the_program_does_not_have)
{
    QStringList literals;
    for (const QString &source : sources())
        literals << stringLiterals(source);
    const QSet<QString> existing = piecesOf(literals);
    for (const QString &text : tabled()) {
        for (const QString &piece : fixedPieces(text))
            EXPECT_TRUE(existing.contains(piece)) << qPrintable(piece) << "\n  of: " << qPrintable(text);
    }
}

TEST(Messages, what_is_passed_over_still_exists)
{
    QStringList literals;
    for (const QString &source : sources())
        literals << stringLiterals(source);
    for (const QString &literal : noMessages)
        EXPECT_TRUE(literals.contains(literal)) << qPrintable(literal);
}
