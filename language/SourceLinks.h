#pragma once

#include "language/Instruction.h"
#include "language/LogoParser.h"

#include <QList>

// The token of `parser` at a cursor on (line, column), the cursor touching it from either side; -1 for none.
qsizetype tokenAt(const LogoParser &parser, int line, int column);

// Which of `instructions` (parsed from the same text as `parser`) the word at the cursor made:
// a command's own instructions; for a REPEAT, everything made inside its brackets; for a recipe
// call in the main program, everything that call drew; for a recipe's name after TO, everything its body made.
QList<qsizetype> instructionsMadeAt(const LogoParser &parser, const QList<Instruction> &instructions, int line,
                                   int column);
