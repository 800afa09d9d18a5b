// Starts the real window on stores no child should ever have (a creation with a 10 MB title and
// 10 MB of code; 5 MB of code for the first mission) and reports how long each step keeps the
// window from drawing, and the resident memory. Not a test; figures for a person to read.
// Run it on a display, e.g.  xvfb-run -a build/tools/hostilestores
#include "ItemSearch.h"
#include "ProcessMemory.h"
#include "app/Studio.h"
#include "gallery/CreationCodec.h"
#include "profile/SqlitePreferencesStore.h"
#include "ui/StudioWindow.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QtQml/qqmlextensionplugin.h>

#include <cstdio>
#include <functional>

Q_IMPORT_QML_PLUGIN(MarbleCovePlugin)

namespace {


// The longest the event loop went without turning, while `step` and the frames after it ran:
// what a child feels as a frozen window.
double longestStall(const std::function<void()> &step, int settleMs = 1500)
{
    QElapsedTimer clock;
    clock.start();
    qint64 last = 0, longest = 0;
    QTimer ticker;
    ticker.setInterval(5);
    QObject::connect(&ticker, &QTimer::timeout, [&] {
        longest = std::max(longest, clock.elapsed() - last);
        last = clock.elapsed();
    });
    ticker.start();
    QTimer::singleShot(0, [&] {
        const qint64 before = clock.elapsed();
        step();
        longest = std::max(longest, clock.elapsed() - before);
        last = clock.elapsed();
    });
    QTest::qWait(settleMs);
    return double(longest);
}

void row(const char *what, double ms)
{
    std::printf("  %-44s %8.0f ms   resident %5.0f MiB\n", what, ms, processMemory().residentMiB);
    std::fflush(stdout);
}

void measure(const char *label, const QString &storePath)
{
    std::printf("%s\n", label);
    SqlitePreferencesStore store(storePath);
    std::unique_ptr<Studio> studio;
    QQmlApplicationEngine engine;
    QQuickWindow *window = nullptr;
    QElapsedTimer started;
    started.start();
    studio = std::make_unique<Studio>(store);
    window = loadStudioWindow(engine, *studio);
    if (!window || !QTest::qWaitForWindowExposed(window, 30000)) {
        std::printf("  the window did not open\n");
        return;
    }
    bool drawn = false;
    QObject::connect(window, &QQuickWindow::frameSwapped, window, [&] { drawn = true; });
    QTRY_VERIFY_WITH_TIMEOUT(drawn, 30000);
    row("start-up to the first frame", double(started.elapsed()));
    row("the studio, settling", longestStall([] {}));
    row("opening the gallery", longestStall([&] { studio->setGallery(true); }));
    QQuickItem *card = findItem(window->contentItem(), QStringLiteral("creationCard_0"));
    if (card) {
        row("Open & remix of the first creation", longestStall([&] {
                QTest::mouseClick(window, Qt::LeftButton, {},
                                  card->mapToScene(QPointF(card->width() / 2, card->height() / 2)).toPoint());
            }));
        std::printf("  status line: %s\n", qPrintable(studio->message().left(120)));
    }
    row("running the code in the editor", longestStall([&] { studio->run(); }, 3000));
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    QTemporaryDir folder;

    const QString hugeCreation = folder.filePath(QStringLiteral("huge-creation.sqlite"));
    {
        SqlitePreferencesStore store(hugeCreation);
        store.setBoolean(QStringLiteral("hasCompletedWelcome"), true);
        store.setString(QStringLiteral("playerName"), QStringLiteral("Ada"));
        Creation creation;
        creation.title = QString(10'000'000, QLatin1Char('T'));
        creation.code = QStringLiteral("forward 10\n").repeated(10'000'000 / 11);
        creation.strokes.append({QPointF(0, 0), QPointF(0, -10), QStringLiteral("blue"), 3});
        store.setData(QStringLiteral("creations"), encodeCreations({creation}));
    }
    const QString hugeCode = folder.filePath(QStringLiteral("huge-code.sqlite"));
    {
        SqlitePreferencesStore store(hugeCode);
        store.setBoolean(QStringLiteral("hasCompletedWelcome"), true);
        store.setString(QStringLiteral("playerName"), QStringLiteral("Ada"));
        store.setString(QStringLiteral("code0"), QStringLiteral("forward 10 right 1\n").repeated(5'000'000 / 19));
    }
    std::printf("QT_QPA_PLATFORM=%s, resident before any window %.0f MiB\n", qgetenv("QT_QPA_PLATFORM").constData(),
                processMemory().residentMiB);
    measure("a creation with a 10 MB title and 10 MB of code", hugeCreation);
    measure("5 MB of code for the first mission", hugeCode);
    return 0;
}
