#pragma once

#include "curriculum/Mission.h"

#include <QList>

inline constexpr int missionsPerWorld = 6;

// The six missions of the first world, with both hints written by hand.
const QList<Mission> &firstMissions();

// The whole curriculum, thirty missions; an index outside 0 to 29 is a programming error.
const QList<Mission> &missions();

// Membership is positional: no mission names its world.
constexpr int worldOf(int mission)
{
    return mission / missionsPerWorld;
}
