#pragma once

#include "language/SourcePlace.h"

#include <QString>

// One flat turtle command: aliases, loops and recipes are already gone.
struct Instruction
{
    QString name;   // one of the eleven executable command names
    double value = 0;
    QString word;   // the colour name of "color", else empty
    // The command word that made it.
    SourcePlace place = {};
    // Inside a recipe, the outermost call in the main program, as an index of the parser's
    // tokens (LogoParser::places has its place); else -1. An index keeps instructions small.
    qint32 callToken = -1;

    // Two instructions do the same thing whatever text they came from.
    bool operator==(const Instruction &other) const
    {
        return name == other.name && value == other.value && word == other.word;
    }
};

// Strings move without copying, so a growing list of instructions can be moved as plain bytes.
Q_DECLARE_TYPEINFO(Instruction, Q_RELOCATABLE_TYPE);
