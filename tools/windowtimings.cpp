// Measures the real studio window from outside, under a virtual X server it starts itself:
// how faithfully a long run keeps its pace, what each frame costs as the drawing grows, how long
// a launch takes to its first frame (with and without the graphics caches, on an empty store and
// on a big gallery), resident memory and the CPU an idle window burns. Not a test; figures for a
// person to read. It also times how long saving into a big gallery, exporting a large drawing and
// opening the gallery hold up the window (the longest pause of a 2 ms timer on its thread, and
// the longest gap between frames while it keeps redrawing).
//   windowtimings [--runs N] [--launches N] [--speed S] [--stalls-only] [--waiting]
// --waiting makes the window wait for the save and the export, as it did when it wrote them itself.
// Each figure comes from a fresh process of this same program (the child modes below), which
// opens the window exactly as the application does. QT_QUICK_BACKEND passes through.
#include "ItemSearch.h"
#include "ProcessMemory.h"
#include "app/Studio.h"
#include "gallery/CreationCodec.h"
#include "gallery/PictureExport.h"
#include "profile/SqlitePreferencesStore.h"
#include "ui/StudioWindow.h"

#include <QCommandLineParser>
#include <QDateTime>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QMutex>
#include <QProcess>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QtMath>
#include <QtQml/qqmlextensionplugin.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <optional>

#include <time.h>
#include <unistd.h>

Q_IMPORT_QML_PLUGIN(MarbleCovePlugin)

namespace {

using Clock = std::chrono::steady_clock;

double msSince(Clock::time_point start, Clock::time_point now)
{
    return std::chrono::duration<double, std::milli>(now - start).count();
}

qint64 wallMicroseconds()
{
    return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

double percentile(QList<double> values, double p)
{
    if (values.isEmpty())
        return 0;
    std::sort(values.begin(), values.end());
    return values.at(qsizetype(std::min<double>(double(values.size() - 1), p * double(values.size()))));
}

// 2,000 instructions, 1,980 of them strokes: twenty fans of short spokes.
QString longProgram()
{
    return QStringLiteral("repeat 20 [ repeat 49 [ forward 60 back 57 ] right 18 forward 5 ]");
}


// User plus system CPU time of this process, in seconds.
// The CPU this process has used, to the nanosecond: clock ticks are too coarse for an idle window.
double cpuSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

void report(const char *key, double value)
{
    std::printf("%s=%.3f\n", key, value);
    std::fflush(stdout);
}

// The application's own start, up to the window; the caller has made the QGuiApplication.
struct OpenWindow
{
    SqlitePreferencesStore store;
    Studio studio;
    QQmlApplicationEngine engine;
    QQuickWindow *window = nullptr;

    explicit OpenWindow(const QString &storePath) : store(storePath), studio(store)
    {
        window = loadStudioWindow(engine, studio);
    }
};

// Child: prints the wall clock at the first swapped frame, then leaves.
int firstFrame(const QString &storePath)
{
    OpenWindow open(storePath);
    if (!open.window)
        return 1;
    QObject::connect(open.window, &QQuickWindow::frameSwapped, open.window, [] {
        std::printf("firstFrameWallUs=%lld\n", wallMicroseconds());
        std::fflush(stdout);
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    }, Qt::DirectConnection);
    return QGuiApplication::exec();
}

struct Frame
{
    Clock::time_point begin;
    Clock::time_point swapped;
    int instructions;
};

// Every frame a window swaps, with when its work began and a tag taken at the swap. Frames are
// recorded on the thread that renders, so reading them takes the lock.
class FrameLog
{
public:
    explicit FrameLog(QQuickWindow *window, std::function<int()> tag = [] { return 0; })
    {
        QObject::connect(window, &QQuickWindow::beforeFrameBegin, &m_context, [this] {
            QMutexLocker locked(&m_lock);
            m_begin = Clock::now();
        }, Qt::DirectConnection);
        QObject::connect(window, &QQuickWindow::frameSwapped, &m_context, [this, tag] {
            const Clock::time_point now = Clock::now();
            QMutexLocker locked(&m_lock);
            m_frames.append({m_begin.value_or(now), now, tag()});
            m_begin.reset();
        }, Qt::DirectConnection);
    }

    QList<Frame> frames() const
    {
        QMutexLocker locked(&m_lock);
        return m_frames;
    }

    QList<Clock::time_point> swapTimes() const
    {
        QList<Clock::time_point> times;
        for (const Frame &frame : frames())
            times.append(frame.swapped);
        return times;
    }

private:
    QObject m_context;
    mutable QMutex m_lock;
    std::optional<Clock::time_point> m_begin;
    QList<Frame> m_frames;
};

// Opens the window and lets it settle after its first frames.
bool settle(const OpenWindow &open)
{
    if (!open.window || !QTest::qWaitForWindowExposed(open.window))
        return false;
    QTest::qWait(1500);
    return true;
}

// Child: one long run at `speed`, every instruction and frame timestamped.
int run(const QString &storePath, double speed)
{
    OpenWindow open(storePath);
    if (!settle(open))
        return 1;
    report("restMiB", processMemory().residentMiB);

    Studio &studio = open.studio;
    std::atomic<int> done{0};
    FrameLog log(open.window, [&] { return done.load(); });

    QList<Clock::time_point> carried;
    QObject::connect(&studio, &Studio::stepIndexChanged, &studio, [&] {
        if (studio.stepIndex() > 0)
            carried.append(Clock::now());
        done = studio.stepIndex();
    });
    std::optional<Clock::time_point> end;
    QObject::connect(&studio, &Studio::runningChanged, &studio, [&] {
        if (!studio.running())
            end = Clock::now();
    });

    studio.setCode(longProgram());
    studio.setSpeed(speed);
    const Clock::time_point start = Clock::now();
    studio.run();
    while (!end)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    const double total = msSince(start, *end);
    const int count = int(carried.size());
    QTest::qWait(500);

    report("instructions", count);
    report("runSeconds", total / 1000);
    report("expectedSeconds", count * speed);
    double behind = 0;
    for (int i = 0; i < count; ++i)
        behind = std::max(behind, msSince(start, carried.at(i)) - i * speed * 1000);
    report("mostBehindMs", behind);

    const QList<Frame> frames = log.frames();
    report("frames", double(frames.size()));
    const int bands[][2] = {{1, 100}, {101, 1000}, {1001, 2000}};
    for (const auto &band : bands) {
        QList<double> work, gaps;
        for (qsizetype i = 1; i < frames.size(); ++i) {
            const Frame &frame = frames.at(i);
            if (frame.instructions < band[0] || frame.instructions > band[1] || frame.swapped > *end)
                continue;
            work.append(msSince(frame.begin, frame.swapped));
            gaps.append(msSince(frames.at(i - 1).swapped, frame.swapped));
        }
        const QByteArray name = QByteArray::number(band[1]);
        report("frameWorkP50_" + name, percentile(work, 0.5));
        report("frameWorkP95_" + name, percentile(work, 0.95));
        report("frameWorkMax_" + name, percentile(work, 1));
        report("frameGapP50_" + name, percentile(gaps, 0.5));
        report("frameGapMax_" + name, percentile(gaps, 1));
    }
    const auto [rss, hwm] = processMemory();
    report("afterRunMiB", rss);
    report("peakMiB", hwm);
    return 0;
}

// The longest pause between two of `times` that ends after `from` and begins before `to`.
double longestPause(const QList<Clock::time_point> &times, Clock::time_point from, Clock::time_point to)
{
    double longest = 0;
    for (qsizetype i = 1; i < times.size(); ++i) {
        if (times.at(i) > from && times.at(i - 1) < to)
            longest = std::max(longest, msSince(times.at(i - 1), times.at(i)));
    }
    return longest;
}

// Child: on the big gallery, with the window redrawing all the time and a 2 ms timer on its
// thread, saves a 2,000-stroke drawing, exports it, and opens the gallery.
int stalls(const QString &storePath, bool waiting)
{
    OpenWindow open(storePath);
    if (!settle(open))
        return 1;
    Studio &studio = open.studio;
    studio.enterFree();
    studio.setCode(longProgram());
    studio.step();
    while (studio.stepIndex() < studio.stepTotal())
        studio.step();
    QTest::qWait(500);

    FrameLog log(open.window);
    QObject::connect(open.window, &QQuickWindow::frameSwapped, open.window, [&] { open.window->update(); });
    QList<Clock::time_point> ticks;
    QTimer heartbeat;
    heartbeat.setTimerType(Qt::PreciseTimer);
    QObject::connect(&heartbeat, &QTimer::timeout, [&] { ticks.append(Clock::now()); });
    heartbeat.start(2);
    open.window->update();
    QTest::qWait(500);

    // Waits for `done` after `action`, then reports the time it took and the pauses around it.
    const auto measure = [&](const char *name, const std::function<void()> &action, const std::function<bool()> &done) {
        const Clock::time_point start = Clock::now();
        action();
        while (!done())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
        const Clock::time_point end = Clock::now();
        QTest::qWait(100);
        report(QByteArray(name) + "TotalMs", msSince(start, end));
        report(QByteArray(name) + "TimerPauseMs", longestPause(ticks, start, end));
        report(QByteArray(name) + "FrameGapMs", longestPause(log.swapTimes(), start, end));
    };
    const Clock::time_point now = Clock::now();
    report("restFrameGapMs", longestPause(log.swapTimes(), now - std::chrono::milliseconds(400), now));

    studio.setCreationTitle(QStringLiteral("Twenty fans"));
    studio.setSaving(true);
    QTest::qWait(500);
    measure("save", [&] {
        studio.saveCreation();
        if (waiting)
            studio.finishSaving();
    }, [&] { return studio.message().endsWith(QStringLiteral("is safe in your gallery.")); });
    QTest::qWait(500);

    QTemporaryDir pictures;
    const QString picture = pictures.filePath(QStringLiteral("Marble Cove creation.png"));
    measure("export", [&] {
        if (!waiting)
            return studio.exportPNG(picture);
        writePicture(picture, studio.pngData());
        studio.setMessage(QStringLiteral("Your picture is exported!"));
    }, [&] { return studio.message() == QStringLiteral("Your picture is exported!"); });
    QTest::qWait(500);

    // Until the first frame begun after the flag is set has been swapped.
    Clock::time_point asked;
    measure("galleryOpen", [&] {
        asked = Clock::now();
        studio.setGallery(true);
    }, [&] {
        const QList<Frame> frames = log.frames();
        return !frames.isEmpty() && frames.last().begin > asked;
    });
    return 0;
}

// Child: the CPU an idle window takes, with nothing focused and with the code editor focused.
int idle(const QString &storePath)
{
    OpenWindow open(storePath);
    if (!open.window || !QTest::qWaitForWindowExposed(open.window))
        return 1;
    // A plain event loop, as the application runs: QTest::qWait wakes every few milliseconds.
    const auto share = [](int seconds) {
        QTest::qWait(1000);
        const double cpu = cpuSeconds();
        QEventLoop loop;
        QTimer::singleShot(seconds * 1000, &loop, &QEventLoop::quit);
        loop.exec();
        return 100 * (cpuSeconds() - cpu) / seconds;
    };
    report("idleCpuPercent", share(5));
    QQuickItem *editor = findItem(open.window->contentItem(), QStringLiteral("codeEditor"));
    if (!editor)
        return 2;
    open.window->requestActivate();
    editor->forceActiveFocus();
    report("editorCpuPercent", share(5));
    return 0;
}

// The parent's side: a virtual X server for the children to draw on.
class VirtualDisplay
{
public:
    VirtualDisplay()
    {
        int pipe[2];
        if (::pipe(pipe) != 0)
            return;
        m_server.setProgram(QStringLiteral("Xvfb"));
        m_server.setArguments({QStringLiteral("-displayfd"), QString::number(pipe[1]), QStringLiteral("-screen"),
                               QStringLiteral("0"), QStringLiteral("1600x1200x24"), QStringLiteral("-nolisten"),
                               QStringLiteral("tcp")});
        m_server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_server.start();
        ::close(pipe[1]);
        QByteArray number;
        char c;
        while (::read(pipe[0], &c, 1) == 1 && c != '\n')
            number.append(c);
        ::close(pipe[0]);
        if (!number.isEmpty())
            m_name = QStringLiteral(":") + QString::fromLatin1(number);
    }
    ~VirtualDisplay()
    {
        m_server.terminate();
        m_server.waitForFinished(3000);
    }
    QString name() const { return m_name; }

private:
    QProcess m_server;
    QString m_name;
};

struct Child
{
    QString display;
    QString program;

    // Runs one child to its end and returns its key=value lines.
    QHash<QString, double> operator()(const QStringList &arguments, const QString &cacheHome,
                                      qint64 *startedUs = nullptr) const
    {
        QProcess child;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DISPLAY"), display);
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        environment.insert(QStringLiteral("XDG_CACHE_HOME"), cacheHome);
        child.setProcessEnvironment(environment);
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        if (startedUs)
            *startedUs = wallMicroseconds();
        child.start(program, arguments);
        child.waitForFinished(600000);
        QHash<QString, double> values;
        for (const QByteArray &line : child.readAllStandardOutput().split('\n')) {
            const qsizetype equals = line.indexOf('=');
            if (equals > 0)
                values.insert(QString::fromLatin1(line.left(equals)), line.mid(equals + 1).toDouble());
        }
        return values;
    }
};

QString summary(const QList<double> &values, int decimals)
{
    if (values.isEmpty())
        return QStringLiteral("-");
    return QStringLiteral("%1 (%2–%3)")
        .arg(percentile(values, 0.5), 0, 'f', decimals)
        .arg(*std::min_element(values.begin(), values.end()), 0, 'f', decimals)
        .arg(*std::max_element(values.begin(), values.end()), 0, 'f', decimals);
}

void row(const QString &what, const QList<double> &values, int decimals = 1)
{
    std::printf("%-52s %s\n", qPrintable(what), qPrintable(summary(values, decimals)));
    std::fflush(stdout);
}

// 200 creations of 500 strokes each, about 12 MB of JSON.
void fillGallery(const QString &storePath)
{
    SqlitePreferencesStore store(storePath);
    QList<Creation> creations;
    for (int i = 0; i < 200; ++i) {
        Creation creation;
        creation.title = QStringLiteral("Creation %1").arg(i);
        creation.code = QStringLiteral("repeat 100 [ forward 5 right 7 ]");
        creation.theme = i % 6;
        for (int k = 0; k < 500; ++k) {
            const double a = 0.1 * k + i, b = 0.1 * (k + 1) + i;
            creation.strokes.append({QPointF(150.123456 * qSin(a), -150.654321 * qCos(a)),
                                     QPointF(150.123456 * qSin(b), -150.654321 * qCos(b)), QStringLiteral("blue"),
                                     double(1 + k % 5)});
        }
        creations.append(creation);
    }
    store.setData(QStringLiteral("creations"), encodeCreations(creations));
}

int parent(const QStringList &arguments)
{
    QCommandLineParser options;
    options.addOption({QStringLiteral("runs"), QStringLiteral("Long runs to time."), QStringLiteral("n"),
                       QStringLiteral("3")});
    options.addOption({QStringLiteral("launches"), QStringLiteral("Launches of each kind."), QStringLiteral("n"),
                       QStringLiteral("5")});
    options.addOption({QStringLiteral("speed"), QStringLiteral("Pause per instruction."), QStringLiteral("s"),
                       QStringLiteral("0.01")});
    options.addOption({QStringLiteral("stalls-only"), QStringLiteral("Only the save, export and gallery stalls.")});
    options.addOption({QStringLiteral("waiting"), QStringLiteral("The window waits for the save and the export.")});
    options.process(arguments);
    const int runs = options.value(QStringLiteral("runs")).toInt();
    const int launches = options.value(QStringLiteral("launches")).toInt();
    const QString speed = options.value(QStringLiteral("speed"));

    VirtualDisplay display;
    if (display.name().isEmpty()) {
        std::fprintf(stderr, "could not start Xvfb\n");
        return 1;
    }
    const Child child{display.name(), QCoreApplication::applicationFilePath()};
    QTemporaryDir folder;
    std::printf("display %s, QT_QUICK_BACKEND=%s\n", qPrintable(display.name()),
                qgetenv("QT_QUICK_BACKEND").isEmpty() ? "(unset)" : qgetenv("QT_QUICK_BACKEND").constData());

    // A store that skips the welcome flow, for the runs and the idle window.
    const QString played = folder.filePath(QStringLiteral("played.sqlite"));
    {
        SqlitePreferencesStore store(played);
        store.setBoolean(QStringLiteral("hasCompletedWelcome"), true);
        store.setString(QStringLiteral("playerName"), QStringLiteral("Ada"));
    }
    const QString gallery = folder.filePath(QStringLiteral("gallery.sqlite"));
    fillGallery(gallery);

    QHash<QString, QList<double>> stalled;
    for (int i = 0; i < launches; ++i) {
        const QString store = folder.filePath(QStringLiteral("stalls%1.sqlite").arg(i));
        QFile::copy(gallery, store);
        {
            SqlitePreferencesStore played(store);
            played.setBoolean(QStringLiteral("hasCompletedWelcome"), true);
            played.setString(QStringLiteral("playerName"), QStringLiteral("Ada"));
        }
        const QString how = options.isSet(QStringLiteral("waiting")) ? QStringLiteral("waiting") : QStringLiteral("apart");
        const auto values = child({QStringLiteral("--child-stalls"), store, how}, folder.filePath(QStringLiteral("cache0")));
        for (auto it = values.begin(); it != values.end(); ++it)
            stalled[it.key()].append(it.value());
    }
    row(QStringLiteral("big gallery: longest frame gap at rest (ms)"), stalled.value(QStringLiteral("restFrameGapMs")));
    for (const auto &[key, label] : {std::pair{"save", "save of 1,980 strokes"}, std::pair{"export", "PNG export"},
                                     std::pair{"galleryOpen", "opening the gallery"}}) {
        const auto get = [&](const char *suffix) { return stalled.value(QLatin1String(key) + QLatin1String(suffix)); };
        row(QStringLiteral("big gallery: %1, until done (ms)").arg(QLatin1String(label)), get("TotalMs"));
        row(QStringLiteral("big gallery: %1, longest 2 ms timer pause (ms)").arg(QLatin1String(label)), get("TimerPauseMs"));
        row(QStringLiteral("big gallery: %1, longest frame gap (ms)").arg(QLatin1String(label)), get("FrameGapMs"));
    }
    if (options.isSet(QStringLiteral("stalls-only")))
        return 0;

    int cacheNumber = 0;
    for (const auto &[label, store] : {std::pair{"empty store", QString()}, std::pair{"big gallery", gallery}}) {
        QList<double> first, repeat;
        for (int i = 0; i < launches; ++i) {
            const QString cache = folder.filePath(QStringLiteral("cache%1").arg(++cacheNumber));
            const QString path = store.isEmpty() ? folder.filePath(QStringLiteral("empty%1.sqlite").arg(cacheNumber))
                                                 : store;
            for (QList<double> *into : {&first, &repeat}) {
                qint64 started = 0;
                const auto values = child({QStringLiteral("--child-first-frame"), path}, cache, &started);
                if (values.contains(QStringLiteral("firstFrameWallUs")))
                    into->append((values.value(QStringLiteral("firstFrameWallUs")) - double(started)) / 1000);
            }
        }
        row(QStringLiteral("first frame, first launch, %1 (ms)").arg(QLatin1String(label)), first, 0);
        row(QStringLiteral("first frame, repeat launch, %1 (ms)").arg(QLatin1String(label)), repeat, 0);
    }

    const auto idleValues = child({QStringLiteral("--child-idle"), played}, folder.filePath(QStringLiteral("cache0")));
    row(QStringLiteral("idle CPU, nothing focused (% of a core)"), {idleValues.value(QStringLiteral("idleCpuPercent"))}, 2);
    row(QStringLiteral("idle CPU, code editor focused (% of a core)"),
        {idleValues.value(QStringLiteral("editorCpuPercent"))}, 2);

    QHash<QString, QList<double>> collected;
    for (int i = 0; i < runs; ++i) {
        const auto values = child({QStringLiteral("--child-run"), played, speed}, folder.filePath(QStringLiteral("cache0")));
        for (auto it = values.begin(); it != values.end(); ++it)
            collected[it.key()].append(it.value());
    }
    const auto get = [&](const char *key) { return collected.value(QString::fromLatin1(key)); };
    QList<double> error;
    for (qsizetype i = 0; i < get("runSeconds").size(); ++i)
        error.append(100 * (get("runSeconds").at(i) / get("expectedSeconds").value(i, 1) - 1));
    row(QStringLiteral("run of %1 instructions at %2 s: seconds (expected %3)")
            .arg(get("instructions").value(0))
            .arg(speed)
            .arg(get("expectedSeconds").value(0)),
        get("runSeconds"), 2);
    row(QStringLiteral("pacing error (%)"), error, 1);
    row(QStringLiteral("most behind the clock (ms)"), get("mostBehindMs"), 1);
    row(QStringLiteral("frames during the run"), get("frames"), 0);
    for (const char *band : {"100", "1000", "2000"}) {
        const auto key = [&](const char *prefix) { return QByteArray(prefix) + band; };
        row(QStringLiteral("frame work up to %1 instructions p50 (ms)").arg(QLatin1String(band)),
            get(key("frameWorkP50_")), 2);
        row(QStringLiteral("frame work up to %1 instructions p95 (ms)").arg(QLatin1String(band)),
            get(key("frameWorkP95_")), 2);
        row(QStringLiteral("frame work up to %1 instructions max (ms)").arg(QLatin1String(band)),
            get(key("frameWorkMax_")), 2);
        row(QStringLiteral("frame interval up to %1 instructions p50 (ms)").arg(QLatin1String(band)),
            get(key("frameGapP50_")), 2);
        row(QStringLiteral("frame interval up to %1 instructions max (ms)").arg(QLatin1String(band)),
            get(key("frameGapMax_")), 2);
    }
    row(QStringLiteral("resident at rest (VmRSS, MiB)"), get("restMiB"), 0);
    row(QStringLiteral("resident after the run (VmRSS, MiB)"), get("afterRunMiB"), 0);
    row(QStringLiteral("peak resident (VmHWM, MiB)"), get("peakMiB"), 0);
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const QByteArray mode = argc > 2 ? QByteArray(argv[1]) : QByteArray();
    if (!mode.startsWith("--child-")) {
        QCoreApplication app(argc, argv);
        return parent(app.arguments());
    }
    QGuiApplication app(argc, argv);
    const QString store = QString::fromLocal8Bit(argv[2]);
    if (mode == "--child-first-frame")
        return firstFrame(store);
    if (mode == "--child-idle")
        return idle(store);
    if (mode == "--child-stalls" && argc > 3)
        return stalls(store, QByteArray(argv[3]) == "waiting");
    if (mode == "--child-run" && argc > 3)
        return run(store, QString::fromLocal8Bit(argv[3]).toDouble());
    return 1;
}
