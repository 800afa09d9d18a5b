#include "curriculum/Worlds.h"

const QList<World> &worlds()
{
    static const QList<World> table{
        {QStringLiteral("Turtle Trail"), QStringLiteral("leaf.fill"),
         QStringLiteral("Your first lines, turns, and loops.")},
        {QStringLiteral("Shape City"), QStringLiteral("building.2.fill"),
         QStringLiteral("Discover the math hiding in shapes.")},
        {QStringLiteral("Pen Playground"), QStringLiteral("paintbrush.pointed.fill"),
         QStringLiteral("Jump, draw, and play with your pen.")},
        {QStringLiteral("Pattern Planet"), QStringLiteral("sparkles"),
         QStringLiteral("Small loops become spectacular art.")},
        {QStringLiteral("Maker Mountain"), QStringLiteral("mountain.2.fill"),
         QStringLiteral("Teach your turtle new commands.")},
    };
    return table;
}
