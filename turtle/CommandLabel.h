#pragma once

#include "language/Instruction.h"

#include <QLocale>
#include <QString>

// The short label of an instruction for the status line, such as FORWARD 100 or COLOR pink;
// numbers are written the way the child's locale writes them.
QString commandLabel(const Instruction &instruction, const QLocale &locale = QLocale());
