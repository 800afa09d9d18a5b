#pragma once

#include <QSet>
#include <QString>

// Badges are the only currency: one per mission in `completed`, never spent.
inline constexpr int experiencePerBadge = 100;

int experiencePoints(int badges);

// The title a child carries: one per world's worth of badges, and a master's at all thirty.
QString rank(int badges);

// A mission opens once its predecessor is passed, and a passed one never closes again,
// whatever else a stored state holds.
bool isMissionOpen(int mission, const QSet<int> &completed);
