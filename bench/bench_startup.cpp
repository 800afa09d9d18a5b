// Start-up of the studio (without pictures) from a store that holds a whole game.
#include "app/Studio.h"
#include "curriculum/Missions.h"
#include "profile/SqlitePreferencesStore.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

namespace {

void fillWithAWholeGame(PreferencesStore &store)
{
    QList<qint64> completed;
    for (int i = 0; i < missions().size(); ++i) {
        completed.append(i);
        store.setString(QStringLiteral("code") + QString::number(i), missions().at(i).solution);
    }
    store.setIntegerArray(QStringLiteral("completed"), completed);
    store.setString(QStringLiteral("freeCode"), QStringLiteral("repeat 36 [fd 100 rt 170]"));
    store.setString(QStringLiteral("playerName"), QStringLiteral("Ada Lovelace"));
    store.setStringDictionary(QStringLiteral("turtleNames"),
                              {{QStringLiteral("0"), QStringLiteral("Sprout")}, {QStringLiteral("3"), QStringLiteral("Queenie")}});
    store.setInteger(QStringLiteral("turtle"), 3);
    store.setInteger(QStringLiteral("theme"), 5);
    store.setBoolean(QStringLiteral("hasCompletedWelcome"), true);
}

void studioStartUp(benchmark::State &state)
{
    QTemporaryDir folder;
    SqlitePreferencesStore store(folder.filePath(QStringLiteral("preferences.sqlite")));
    fillWithAWholeGame(store);
    for (auto _ : state) {
        Studio studio(store, false);
        if (studio.badges() != missions().size() || studio.turtleName() != u"Queenie") {
            state.SkipWithError("the stored game did not come back");
            break;
        }
        benchmark::DoNotOptimize(studio.code());
    }
}

} // namespace

BENCHMARK(studioStartUp)->Unit(benchmark::kMillisecond);
