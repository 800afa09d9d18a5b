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

    QList<Instruction> parse();
    QList<Instruction> expand(const QStringList &tokens, qsizetype &index, int depth, bool bracket,
                              const QStringList &stack) const;

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
