#pragma once

#include <QString>

// One flat turtle command: aliases, loops and recipes are already gone.
struct Instruction
{
    QString name;   // one of the eleven executable command names
    double value = 0;
    QString word;   // the colour name of "color", else empty
};
