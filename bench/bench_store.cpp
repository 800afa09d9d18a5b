// One code edit written to the preferences store, as on every keystroke: with an empty store
// and with a 20 MB gallery under "creations". Reports the median and 99th percentile per write.
#include "profile/SqlitePreferencesStore.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDir>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <vector>

namespace {

// Qt SQL loads its drivers only once an application object exists.
void ensureApplication()
{
    static int argc = 1;
    static char name[] = "marblecove_bench";
    static char *argv[] = {name, nullptr};
    if (!QCoreApplication::instance())
        new QCoreApplication(argc, argv);
}

// About 200 characters, different on every edit.
QString codeEdit(qint64 edit)
{
    return QStringLiteral("to petal\n  repeat 2 [ fd 80 rt 60 fd 80 rt 120 ]\nend\n"
                          "; a flower of many petals\nsetcolor purple\npenwidth 4\n"
                          "repeat 12 [ petal rt 30 ]\npu home pd setcolor green bk %1\n")
        .arg(edit);
}

void storeWrite(benchmark::State &state)
{
    ensureApplication();
    // Beside the real store, so the file system (and its syncs) are the ones users get.
    const QString dataFolder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    QDir().mkpath(dataFolder);
    QTemporaryDir dir(dataFolder + QStringLiteral("/marblecove-bench-XXXXXX"));
    const QString path = dir.filePath(QStringLiteral("preferences.sqlite"));
    if (state.range(0) != 0) {
        QByteArray creations(20 * 1024 * 1024, Qt::Uninitialized);
        QRandomGenerator(1).fillRange(reinterpret_cast<quint32 *>(creations.data()), creations.size() / 4);
        SqlitePreferencesStore(path).setData(QStringLiteral("creations"), creations);
    }
    SqlitePreferencesStore store(path);
    if (store.filePath().isEmpty()) {
        state.SkipWithError("no store file");
        return;
    }

    std::vector<double> samples;
    qint64 edit = 0;
    for (auto _ : state) {
        const QString code = codeEdit(++edit);
        const auto start = std::chrono::steady_clock::now();
        const bool written = store.setString(QStringLiteral("code0"), code);
        const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
        if (!written) {
            state.SkipWithError("write failed");
            break;
        }
        state.SetIterationTime(spent.count());
        samples.push_back(spent.count() * 1e3);
    }
    if (samples.empty())
        return;
    std::sort(samples.begin(), samples.end());
    const auto at = [&](double fraction) { return samples[size_t(fraction * double(samples.size() - 1))]; };
    state.counters["median_ms"] = at(0.5);
    state.counters["p99_ms"] = at(0.99);
    state.counters["max_ms"] = samples.back();
}

} // namespace

BENCHMARK(storeWrite)
    ->ArgName("gallery20MB")
    ->Arg(0)
    ->Arg(1)
    ->Iterations(2000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
