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
    // The tokens outside every recipe, in order.
    QStringList executableTokens;

    // Where each of `tokens` stands in the text, in step with it; a recipe's body starts at
    // procedureStarts[name] in `tokens`.
    QList<SourcePlace> places;
    QHash<QString, qsizetype> procedureStarts;
    // Each comment, from its ";" to the line break that ends it.
    QList<SourcePlace> comments;

    QList<Instruction> parse();

    static const QHash<QString, QString> &aliases();
    static bool isBuiltin(const QString &word);
    static bool isNumberCommand(const QString &word);
    static bool isPlainCommand(const QString &word);
    static const QStringList &colorNames();

    static constexpr qsizetype maxTokens = 12000;
    static constexpr qsizetype maxInstructions = 2000;
    static constexpr int maxDepth = 11;

private:
    // Which of `tokens` the i-th token of a run being expanded is: indices[i] when the run was
    // gathered from here and there (the main program between recipes), else first + i.
    struct Run
    {
        const qint32 *indices = nullptr;
        qint32 first = 0;
        qint32 operator()(qsizetype i) const { return indices ? indices[i] : first + qint32(i); }
    };
    // `run` tells where each of `tokens` came from; `opener` is the word that opened this level
    // (a REPEAT or a recipe call), blamed when the level is too deep or unclosed.
    QList<Instruction> expand(const QStringList &tokens, qsizetype &index, int depth, bool bracket,
                              const QStringList &stack, Run run, SourcePlace opener = {}) const;

    // A recipe that expanded once at a depth expands the same way again there. Without this,
    // recipes that call each other many times but draw nothing would take exponential time.
    mutable QHash<std::pair<QString, int>, QList<Instruction>> m_expandedRecipes;
};
