#include "turtle/CommandLabel.h"

#include "language/LogoParser.h"

#include <cmath>

namespace {

// Like a decimal number format: grouping as the locale has it, at most three decimals.
// ('g' would write 10000 as 1E+04.)
QString localNumber(double value, const QLocale &locale)
{
    double rounded = std::round(value * 1000.0) / 1000.0;
    if (rounded == 0)
        rounded = 0; // no "-0"
    return locale.toString(rounded, 'f', QLocale::FloatingPointShortest);
}

} // namespace

QString commandLabel(const Instruction &instruction, const QLocale &locale)
{
    QString label = instruction.name.toUpper();
    if (!instruction.word.isEmpty())
        label += u' ' + instruction.word;
    else if (LogoParser::isNumberCommand(instruction.name))
        label += u' ' + localNumber(instruction.value, locale);
    return label;
}
