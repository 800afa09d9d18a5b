#pragma once

#include "language/Instruction.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <utility>

// Turns one program text into a flat list of instructions, or throws one LogoError.
// A fresh parser is made for every program.
class LogoParser
{
public:
    explicit LogoParser(const QString &text);

    QStringList tokens;
    qsizetype index = 0;
    QHash<QString, QStringList> procedures;
    QStringList executableTokens;

    // Where each token stands in the text, in step with the lists above; a recipe's body
    // starts at procedureStarts[name] in `tokens`.
    QList<SourcePlace> places;
    QList<SourcePlace> executablePlaces;
    QHash<QString, qsizetype> procedureStarts;
    // Each comment, from its ";" to the line break that ends it.
    QList<SourcePlace> comments;

    QList<Instruction> parse();
    // `where` holds the place of each of `tokens` (none when null); `opener` is the word that
    // opened this level (a REPEAT or a recipe call), blamed when the level is too deep or unclosed.
    QList<Instruction> expand(const QStringList &tokens, qsizetype &index, int depth, bool bracket,
                              const QStringList &stack, const SourcePlace *where = nullptr,
                              SourcePlace opener = {}) const;

    static const QHash<QString, QString> &aliases();
    static bool isBuiltin(const QString &word);
    static bool isNumberCommand(const QString &word);
    static bool isPlainCommand(const QString &word);
    static const QStringList &colorNames();

    static constexpr qsizetype maxTokens = 12000;
    static constexpr qsizetype maxInstructions = 2000;
    static constexpr int maxDepth = 11;

private:
    // A recipe that expanded once at a depth expands the same way again there. Without this,
    // recipes that call each other many times but draw nothing would take exponential time.
    mutable QHash<std::pair<QString, int>, QList<Instruction>> m_expandedRecipes;
};
