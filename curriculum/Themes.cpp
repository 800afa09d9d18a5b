#include "curriculum/Themes.h"

const QList<CanvasTheme> &themes()
{
    static const QList<CanvasTheme> table{
        {QStringLiteral("Meadow"), 0, QColor::fromRgbF(0.98f, 0.995f, 0.98f)},
        {QStringLiteral("Peach sky"), 6, QColor::fromRgbF(1.0f, 0.92f, 0.85f)},
        {QStringLiteral("Blue lagoon"), 12, QColor::fromRgbF(0.85f, 0.96f, 1.0f)},
        {QStringLiteral("Lavender dream"), 18, QColor::fromRgbF(0.93f, 0.88f, 1.0f)},
        {QStringLiteral("Golden hour"), 24, QColor::fromRgbF(1.0f, 0.97f, 0.76f)},
        {QStringLiteral("Rose quartz"), 30, QColor::fromRgbF(1.0f, 0.87f, 0.93f)},
    };
    return table;
}

bool isThemeAvailable(int theme, int badges)
{
    return theme >= 0 && theme < themes().size() && badges >= themes().at(theme).unlock;
}

QString themeMenuLabel(const CanvasTheme &theme, int badges)
{
    if (badges >= theme.unlock)
        return theme.name;
    return theme.name + QStringLiteral(" · ") + QString::number(theme.unlock) + QStringLiteral(" badges");
}

std::optional<int> themeUnlockedAt(int badges)
{
    for (qsizetype i = 0; i < themes().size(); ++i) {
        if (themes().at(i).unlock == badges)
            return int(i);
    }
    return std::nullopt;
}
