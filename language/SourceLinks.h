#pragma once

#include "language/Instruction.h"

#include <QList>
#include <QStringList>

// Which of `instructions` the word at a cursor on (line, column) made, the cursor touching it from
// either side: a command's own instructions; for a REPEAT, everything made inside its brackets;
// for a recipe call in the main program, everything that call drew; for a recipe's name after TO,
// everything its body made. `tokens` and `places` are the parser's, from the same text.
QList<qsizetype> instructionsMadeAt(const QStringList &tokens, const QList<SourcePlace> &places,
                                   const QList<Instruction> &instructions, int line, int column);
