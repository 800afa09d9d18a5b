#include "turtle/Palette.h"

const QHash<QString, QColor> &palette()
{
    static const QHash<QString, QColor> table{
        {QStringLiteral("pink"), QColor::fromRgbF(1.0f, 0.18f, 0.33f)},
        {QStringLiteral("purple"), colors::violet},
        {QStringLiteral("blue"), QColor::fromRgbF(0.0f, 0.48f, 1.0f)},
        {QStringLiteral("green"), QColor::fromRgbF(0.2f, 0.78f, 0.35f)},
        {QStringLiteral("orange"), QColor::fromRgbF(1.0f, 0.58f, 0.0f)},
        {QStringLiteral("yellow"), QColor::fromRgbF(1.0f, 0.8f, 0.0f)},
        {QStringLiteral("white"), QColor::fromRgbF(1.0f, 1.0f, 1.0f)},
        {QStringLiteral("black"), colors::ink},
        {QStringLiteral("red"), QColor::fromRgbF(1.0f, 0.23f, 0.19f)},
    };
    return table;
}

QColor strokeColor(const QString &name)
{
    return palette().value(name, colors::violet);
}
