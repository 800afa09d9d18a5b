// Scrolls the gallery through 300 creations and reports what the scrolling costs: frame times,
// how many cards were made, and how many thumbnails were asked to repaint while they were on
// screen. Not a test; a figure for a person to read.
//   galleryscroll [creations]
#include "ItemSearch.h"
#include "app/Studio.h"
#include "gallery/CreationCodec.h"
#include "profile/SqlitePreferencesStore.h"
#include "ui/StudioWindow.h"
#include "ui/studio/DrawingSurface.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>
#include <QtMath>
#include <QtQml/qqmlextensionplugin.h>

#include <algorithm>
#include <cstdio>
#include <functional>

Q_IMPORT_QML_PLUGIN(MarbleCovePlugin)

namespace {

// A star of `points` spokes, so every thumbnail has a few hundred strokes to paint.
QList<Stroke> star(int seed)
{
    QList<Stroke> strokes;
    const int spokes = 100 + seed % 100;
    for (int i = 0; i < spokes; ++i) {
        const double a = 2 * M_PI * i / spokes;
        const double b = 2 * M_PI * (i * 7 % spokes) / spokes;
        strokes.append({QPointF(150 * qSin(a), -150 * qCos(a)), QPointF(150 * qSin(b), -150 * qCos(b)),
                        QStringLiteral("purple"), 3});
    }
    return strokes;
}

double percentile(QList<double> values, double p)
{
    if (values.isEmpty())
        return 0;
    std::sort(values.begin(), values.end());
    return values.at(qsizetype(std::min<double>(values.size() - 1, p * values.size())));
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    const int count = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 300;

    QTemporaryDir folder;
    SqlitePreferencesStore store(folder.filePath(QStringLiteral("preferences.sqlite")));
    QList<Creation> creations;
    for (int i = 0; i < count; ++i) {
        Creation creation;
        creation.title = QStringLiteral("Star %1").arg(i);
        creation.code = QStringLiteral("forward 10");
        creation.theme = i % 6;
        creation.strokes = star(i);
        creations.append(creation);
    }
    store.setData(QStringLiteral("creations"), encodeCreations(creations));
    store.setBoolean(QStringLiteral("hasCompletedWelcome"), true);
    store.setString(QStringLiteral("playerName"), QStringLiteral("Ada"));

    Studio studio(store);
    QQmlApplicationEngine engine;
    QQuickWindow *window = loadStudioWindow(engine, studio);
    if (!window)
        return 1;
    if (!QTest::qWaitForWindowExposed(window))
        return 1;

    studio.setGallery(true);
    QTest::qWait(500);
    QQuickItem *grid = findItem(window->contentItem(), QStringLiteral("creationGrid"));
    if (!grid)
        return 2;

    // Every change a thumbnail announces is a repaint it asks for; cards are counted as they appear.
    QSet<DrawingSurface *> seen;
    int repaintRequests = 0;
    int made = 0;
    // The context of every connection below: it goes before the counters do.
    QObject watcher;
    const auto watchNewCards = [&] {
        for (QQuickItem *cell : grid->property("contentItem").value<QQuickItem *>()->childItems()) {
            DrawingSurface *surface = nullptr;
            std::function<void(QQuickItem *)> visit = [&](QQuickItem *item) {
                if (auto *found = qobject_cast<DrawingSurface *>(item))
                    surface = found;
                for (QQuickItem *child : item->childItems())
                    visit(child);
            };
            visit(cell);
            if (!surface || seen.contains(surface))
                continue;
            seen.insert(surface);
            ++made;
            // Its address may be handed to a later card once it is gone.
            QObject::connect(surface, &QObject::destroyed, &watcher, [&seen, surface] { seen.remove(surface); });
            const auto count = [&] { ++repaintRequests; };
            QObject::connect(surface, &DrawingSurface::strokesChanged, &watcher, count);
            QObject::connect(surface, &DrawingSurface::ghostChanged, &watcher, count);
            QObject::connect(surface, &DrawingSurface::boundsChanged, &watcher, count);
            QObject::connect(surface, &DrawingSurface::backgroundChanged, &watcher, count);
            QObject::connect(surface, &DrawingSurface::gridChanged, &watcher, count);
            QObject::connect(surface, &QQuickItem::widthChanged, &watcher, count);
            QObject::connect(surface, &QQuickItem::heightChanged, &watcher, count);
        }
    };
    watchNewCards();
    const int before = made;

    QElapsedTimer clock;
    QList<double> frameWork;
    QList<double> frameGaps;
    qint64 frameStart = -1;
    qint64 lastSwap = -1;
    clock.start();
    // From the start of the frame (before the view lays out and makes new cards) to the swap.
    QObject::connect(window, &QQuickWindow::beforeFrameBegin, &watcher, [&] { frameStart = clock.nsecsElapsed(); },
                     Qt::DirectConnection);
    QObject::connect(window, &QQuickWindow::frameSwapped, &watcher, [&] {
        const qint64 now = clock.nsecsElapsed();
        if (frameStart >= 0)
            frameWork.append((now - frameStart) / 1e6);
        if (lastSwap >= 0)
            frameGaps.append((now - lastSwap) / 1e6);
        lastSwap = now;
        frameStart = -1;
        watchNewCards();
    }, Qt::DirectConnection);

    // Flick down to the end and back up again, as a child throwing the list with the mouse would.
    QElapsedTimer total;
    total.start();
    for (const double velocity : {-4000.0, 4000.0}) {
        const char *edge = velocity < 0 ? "atYEnd" : "atYBeginning";
        while (!grid->property(edge).toBool()) {
            QMetaObject::invokeMethod(grid, "flick", Q_ARG(qreal, 0), Q_ARG(qreal, velocity));
            QTest::qWait(100);
        }
    }
    const double seconds = total.elapsed() / 1000.0;

    std::printf("creations: %d, scrolled %.0f px down and back in %.1f s\n", count,
                grid->property("contentHeight").toDouble() - grid->height(), seconds);
    std::printf("frames: %lld; frame work (layout, new cards, sync, render) median %.2f ms, p95 %.2f ms, max %.2f ms\n",
                qint64(frameWork.size()), percentile(frameWork, 0.5), percentile(frameWork, 0.95),
                percentile(frameWork, 1.0));
    std::printf("frame interval median %.2f ms, p95 %.2f ms\n", percentile(frameGaps, 0.5), percentile(frameGaps, 0.95));
    std::printf("cards made: %d at the start, %d more while scrolling\n", before, made - before);
    std::printf("repaint requests from cards already made: %d\n", repaintRequests);
    return 0;
}
