#pragma once

#include "language/SourcePlace.h"

#include <QString>

// One flat turtle command: aliases, loops and recipes are already gone.
struct Instruction
{
    QString name;   // one of the eleven executable command names
    double value = 0;
    QString word;   // the colour name of "color", else empty
    // The command word that made it; inside a recipe, also the outermost call in the main program.
    SourcePlace place = {};
    SourcePlace callSite = {};

    // Two instructions do the same thing whatever text they came from.
    bool operator==(const Instruction &other) const
    {
        return name == other.name && value == other.value && word == other.word;
    }
};
