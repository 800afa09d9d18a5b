#include "turtle/Turtle.h"

#include "language/LogoError.h"
#include "language/LogoParser.h"

#include <QLineF>

#include <cmath>
#include <numbers>

namespace {

// Shorter moves than this leave no visible stroke.
constexpr double minimumStroke = 0.001;

} // namespace

void Turtle::apply(const Instruction &instruction)
{
    const QString &name = instruction.name;
    if (name == u"forward" || name == u"back") {
        const double distance = name == u"forward" ? instruction.value : -instruction.value;
        const double radians = heading * std::numbers::pi / 180.0;
        const QPointF next(point.x() + distance * std::sin(radians), point.y() - distance * std::cos(radians));
        if (pen && std::abs(distance) > minimumStroke)
            strokes.append(Stroke{point, next, color, width});
        point = next;
    } else if (name == u"right") {
        heading += instruction.value;
    } else if (name == u"left") {
        heading -= instruction.value;
    } else if (name == u"setheading") {
        heading = instruction.value;
    } else if (name == u"penup") {
        pen = false;
    } else if (name == u"pendown") {
        pen = true;
    } else if (name == u"color") {
        color = instruction.word;
    } else if (name == u"width") {
        width = instruction.value;
    } else if (name == u"home") {
        if (pen && QLineF(point, QPointF()).length() > minimumStroke)
            strokes.append(Stroke{point, QPointF(), color, width});
        point = QPointF();
        heading = 0;
    } else if (name == u"clear") {
        reset();
    }
}

void Turtle::reset()
{
    *this = Turtle();
}

QList<Stroke> drawing(const QList<Instruction> &instructions)
{
    Turtle turtle;
    for (const Instruction &instruction : instructions)
        turtle.apply(instruction);
    return turtle.strokes;
}

QList<Stroke> simulate(const QString &source)
{
    try {
        LogoParser parser(source);
        return drawing(parser.parse());
    } catch (const LogoError &) {
        return {};
    }
}
