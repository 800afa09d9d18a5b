// Saving a creation into a large gallery, and start-up with that gallery in the store.
#include "app/Studio.h"
#include "gallery/CreationCodec.h"
#include "profile/SqlitePreferencesStore.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

namespace {

constexpr int galleryCreations = 200;
constexpr int strokesEach = 500;

// 500 strokes: a spiral that never repeats a stroke.
const QString spiral = QStringLiteral("repeat 100 [fd 3.7 rt 14.3 fd 1.1 rt 7.9 fd 2.3 rt 3.1 fd 1.7 rt 5.3 fd 2.9 rt 4.1]");

QByteArray largeGallery()
{
    Q_ASSERT(simulate(spiral).size() == strokesEach);
    Creation creation;
    creation.title = QStringLiteral("Spiral");
    creation.code = spiral;
    creation.strokes = simulate(spiral);
    QList<Creation> creations;
    for (int i = 0; i < galleryCreations; ++i) {
        creation.id = QUuid::createUuid();
        creations.append(creation);
    }
    return encodeCreations(creations);
}

// state.range(0): how many creations were saved since start-up before the measured one. The
// gallery has been looked at (decoded) before, as the window does ahead of time.
void saveCreationIntoLargeGallery(benchmark::State &state)
{
    QTemporaryDir folder;
    SqlitePreferencesStore store(folder.filePath(QStringLiteral("preferences.sqlite")));
    const QByteArray gallery = largeGallery();
    state.counters["galleryMB"] = double(gallery.size()) / 1e6;
    for (auto _ : state) {
        state.PauseTiming();
        store.setData(QStringLiteral("creations"), gallery);
        Studio studio(store, false);
        Creation drawing;
        drawing.code = spiral;
        drawing.strokes = simulate(spiral);
        studio.openCreation(drawing);
        studio.setCreationTitle(QStringLiteral("One more spiral"));
        for (int i = 0; i < state.range(0); ++i)
            studio.saveCreation();
        if (studio.creations().size() != galleryCreations + state.range(0) || studio.strokes().size() != strokesEach) {
            state.SkipWithError("the gallery did not load");
            break;
        }
        state.ResumeTiming();
        studio.saveCreation();
        benchmark::DoNotOptimize(studio.message());
    }
}

// The studio's start-up alone, as the window needs it before its first frame.
void startUpWithLargeGallery(benchmark::State &state)
{
    QTemporaryDir folder;
    SqlitePreferencesStore store(folder.filePath(QStringLiteral("preferences.sqlite")));
    store.setData(QStringLiteral("creations"), largeGallery());
    for (auto _ : state) {
        Studio studio(store, false);
        benchmark::DoNotOptimize(studio.code());
    }
}

// Start-up and then everything the gallery screen needs from the studio: the whole list decoded.
void startUpAndDecodeLargeGallery(benchmark::State &state)
{
    QTemporaryDir folder;
    SqlitePreferencesStore store(folder.filePath(QStringLiteral("preferences.sqlite")));
    store.setData(QStringLiteral("creations"), largeGallery());
    for (auto _ : state) {
        Studio studio(store, false);
        if (studio.creations().size() != galleryCreations
            || studio.creations().first().strokes.size() != strokesEach) {
            state.SkipWithError("the gallery did not load");
            break;
        }
    }
}

} // namespace

BENCHMARK(saveCreationIntoLargeGallery)->ArgName("savedBefore")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(10)->Repetitions(5);
BENCHMARK(startUpWithLargeGallery)->Unit(benchmark::kMillisecond)->Iterations(10)->Repetitions(5);
BENCHMARK(startUpAndDecodeLargeGallery)->Unit(benchmark::kMillisecond)->Iterations(10)->Repetitions(5);
