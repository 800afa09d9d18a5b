// Saving a creation into a large gallery, exporting a large drawing, and start-up with that
// gallery in the store.
#include "app/Studio.h"
#include "gallery/CreationCodec.h"
#include "profile/SqlitePreferencesStore.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <memory>

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

// A studio on the large gallery with a finished 500-stroke drawing, titled and ready to save.
// `savedBefore` creations were saved since start-up; the gallery has been looked at (decoded)
// before, as the window does ahead of time. Nothing when the gallery did not load.
std::unique_ptr<Studio> readyToSave(PreferencesStore &store, const QByteArray &gallery, int savedBefore)
{
    store.setData(QStringLiteral("creations"), gallery);
    auto studio = std::make_unique<Studio>(store, false);
    Creation drawing;
    drawing.code = spiral;
    drawing.strokes = simulate(spiral);
    studio->openCreation(drawing);
    studio->setCreationTitle(QStringLiteral("One more spiral"));
    for (int i = 0; i < savedBefore; ++i) {
        studio->saveCreation();
        studio->finishSaving();
    }
    if (studio->creations().size() != galleryCreations + savedBefore || studio->strokes().size() != strokesEach)
        return nullptr;
    return studio;
}

// What saveCreation holds the window for (the write goes on apart), and, with `durable`, the
// whole save until it is on the disk, which is what the window waited for when it wrote itself.
void saveCreationIntoLargeGallery(benchmark::State &state, bool durable)
{
    QTemporaryDir folder;
    SqlitePreferencesStore store(folder.filePath(QStringLiteral("preferences.sqlite")));
    const QByteArray gallery = largeGallery();
    state.counters["galleryMB"] = double(gallery.size()) / 1e6;
    // Made and dropped while the clock is stopped: freeing the decoded gallery is not the save's.
    std::unique_ptr<Studio> studio;
    for (auto _ : state) {
        state.PauseTiming();
        studio.reset();
        studio = readyToSave(store, gallery, int(state.range(0)));
        if (!studio) {
            state.SkipWithError("the gallery did not load");
            break;
        }
        state.ResumeTiming();
        studio->saveCreation();
        if (durable)
            studio->finishSaving();
        state.PauseTiming();
        studio->finishSaving();
        if (!studio->message().endsWith(QStringLiteral("is safe in your gallery."))) {
            state.SkipWithError("the creation was not saved");
            break;
        }
        state.ResumeTiming();
    }
}

void saveCreationOnWindowThread(benchmark::State &state)
{
    saveCreationIntoLargeGallery(state, false);
}

void saveCreationUntilDurable(benchmark::State &state)
{
    saveCreationIntoLargeGallery(state, true);
}

// What exportPNG holds the window for with 2,000 strokes: painting, encoding and writing go on apart.
void exportOnWindowThread(benchmark::State &state)
{
    QTemporaryDir folder;
    SqlitePreferencesStore store(folder.filePath(QStringLiteral("preferences.sqlite")));
    Studio studio(store, false);
    studio.enterFree();
    studio.setCode(QStringLiteral("repeat 20 [ repeat 50 [ fd 60 bk 57 ] rt 18 fd 5 ]"));
    studio.step();
    while (studio.stepIndex() < studio.stepTotal())
        studio.step();
    const QString path = folder.filePath(QStringLiteral("picture.png"));
    const QString exported = QStringLiteral("Your picture is exported!");
    for (auto _ : state) {
        studio.exportPNG(path);
        state.PauseTiming();
        QElapsedTimer waited;
        waited.start();
        while (studio.message() != exported && waited.elapsed() < 10000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
        if (studio.message() != exported || studio.strokes().size() < 2000) {
            state.SkipWithError("the picture was not exported");
            break;
        }
        studio.setMessage(QString());
        state.ResumeTiming();
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

BENCHMARK(saveCreationOnWindowThread)->ArgName("savedBefore")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(10)->Repetitions(5);
BENCHMARK(saveCreationUntilDurable)->ArgName("savedBefore")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(10)->Repetitions(5);
BENCHMARK(exportOnWindowThread)->Unit(benchmark::kMillisecond)->Iterations(10)->Repetitions(5);
BENCHMARK(startUpWithLargeGallery)->Unit(benchmark::kMillisecond)->Iterations(10)->Repetitions(5);
BENCHMARK(startUpAndDecodeLargeGallery)->Unit(benchmark::kMillisecond)->Iterations(10)->Repetitions(5);
