#pragma once

#include "curriculum/CanvasTheme.h"

#include <QList>
#include <QString>

#include <optional>

// The six canvas themes; each unlocks one world's worth of badges after the one before.
const QList<CanvasTheme> &themes();

// Any badges count, not only those of the world that presents the theme as its reward.
bool isThemeAvailable(int theme, int badges);

// The theme menu's entry: the name, and while locked how many badges it needs.
QString themeMenuLabel(const CanvasTheme &theme, int badges);

// The theme that a new badge bringing the count to `badges` unlocks, worth announcing.
std::optional<int> themeUnlockedAt(int badges);
