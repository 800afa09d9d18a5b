#include "turtle/CommandLabel.h"

#include "language/LogoParser.h"

QString commandLabel(const Instruction &instruction, const QLocale &locale)
{
    QString label = instruction.name.toUpper();
    if (!instruction.word.isEmpty())
        label += u' ' + instruction.word;
    else if (LogoParser::isNumberCommand(instruction.name))
        label += u' ' + locale.toString(instruction.value, 'g', QLocale::FloatingPointShortest);
    return label;
}
