#pragma once

#include "app/Studio.h"
#include "profile/SqlitePreferencesStore.h"

#include <QTemporaryDir>

// A studio on its own real store in a temporary folder, without the companion pictures.
struct StudioFixture
{
    QTemporaryDir folder;
    SqlitePreferencesStore store{folder.filePath(QStringLiteral("preferences.sqlite"))};
    Studio studio{store, false};

    // Another studio on the same store, as after a restart.
    std::unique_ptr<Studio> restart() const { return std::make_unique<Studio>(const_cast<SqlitePreferencesStore &>(store), false); }
};

// Carries out the program in the editor step by step to its end, as pressing Step would.
inline void stepToEnd(Studio &studio)
{
    studio.step();
    while (studio.stepIndex() < studio.stepTotal())
        studio.step();
}
