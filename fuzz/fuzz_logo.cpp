// Arbitrary bytes into the parser and, when they parse, through the turtle.
#include "language/LogoError.h"
#include "language/LogoParser.h"
#include "turtle/CommandLabel.h"
#include "turtle/Turtle.h"

#include <QString>

#include <cmath>
#include <cstddef>
#include <cstdint>

namespace {

bool isExecutable(const Instruction &instruction)
{
    static const QStringList names{
        QStringLiteral("forward"), QStringLiteral("back"), QStringLiteral("right"), QStringLiteral("left"),
        QStringLiteral("setheading"), QStringLiteral("width"), QStringLiteral("color"), QStringLiteral("penup"),
        QStringLiteral("pendown"), QStringLiteral("home"), QStringLiteral("clear"),
    };
    if (!names.contains(instruction.name) || !std::isfinite(instruction.value) || std::abs(instruction.value) > 10000)
        return false;
    if (instruction.name == u"width")
        return instruction.value >= 1 && instruction.value <= 20;
    if (instruction.name == u"color")
        return LogoParser::colorNames().contains(instruction.word);
    return instruction.word.isEmpty();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    QList<Instruction> instructions;
    try {
        LogoParser parser(text);
        instructions = parser.parse();
    } catch (const LogoError &error) {
        if (error.message().isEmpty())
            __builtin_trap();
        return 0;
    }
    if (instructions.size() > LogoParser::maxInstructions)
        __builtin_trap();
    Turtle turtle;
    for (const Instruction &instruction : instructions) {
        if (!isExecutable(instruction))
            __builtin_trap();
        turtle.apply(instruction);
        (void)commandLabel(instruction);
    }
    if (simulate(text) != turtle.strokes)
        __builtin_trap();
    return 0;
}
