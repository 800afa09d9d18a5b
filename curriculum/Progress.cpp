#include "curriculum/Progress.h"

#include "curriculum/Missions.h"

#include <QStringList>

#include <algorithm>

int experiencePoints(int badges)
{
    return experiencePerBadge * badges;
}

QString rank(int badges)
{
    static const QStringList ranks{
        QStringLiteral("Curious Coder"), QStringLiteral("Shape Explorer"), QStringLiteral("Pen Artist"),
        QStringLiteral("Pattern Pro"),   QStringLiteral("Recipe Maker"),
    };
    if (badges == missions().size())
        return QStringLiteral("Marble Cove Master");
    return ranks.at(std::clamp(badges / missionsPerWorld, 0, int(ranks.size()) - 1));
}

bool isMissionOpen(int mission, const QSet<int> &completed)
{
    if (mission < 0 || mission >= missions().size())
        return false;
    return mission == 0 || completed.contains(mission - 1) || completed.contains(mission);
}
