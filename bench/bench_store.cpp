// One code edit written to the preferences store, as on every keystroke: with an empty store
// and with a 20 MB gallery under "creations". Reports the median and 99th percentile per write,
// beside the cost of one bare synced page write, the least any durable write can cost.
#include "profile/SqlitePreferencesStore.h"

#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <vector>

#include <unistd.h>

namespace {

// About 200 characters, different on every edit.
QString codeEdit(qint64 edit)
{
    return QStringLiteral("to petal\n  repeat 2 [ fd 80 rt 60 fd 80 rt 120 ]\nend\n"
                          "; a flower of twelve petals, turning thirty degrees each time\nsetcolor purple\npenwidth 4\n"
                          "repeat 12 [ petal rt 30 ]\npu home pd setcolor green bk %1\n")
        .arg(edit);
}

// Beside the real store, so the file system (and its syncs) are the ones users get.
QString benchFolderTemplate()
{
    const QString dataFolder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    QDir().mkpath(dataFolder);
    return dataFolder + QStringLiteral("/marblecove-bench-XXXXXX");
}

// Per-write times, reported as median, 99th percentile and worst.
class Samples
{
public:
    void add(std::chrono::duration<double> spent, benchmark::State &state)
    {
        state.SetIterationTime(spent.count());
        m_ms.push_back(spent.count() * 1e3);
    }

    void report(benchmark::State &state)
    {
        if (m_ms.empty())
            return;
        std::sort(m_ms.begin(), m_ms.end());
        const auto at = [&](double fraction) { return m_ms[size_t(fraction * double(m_ms.size() - 1))]; };
        state.counters["median_ms"] = at(0.5);
        state.counters["p99_ms"] = at(0.99);
        state.counters["max_ms"] = m_ms.back();
    }

private:
    std::vector<double> m_ms;
};

void storeWrite(benchmark::State &state)
{
    QTemporaryDir dir(benchFolderTemplate());
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
    Samples samples;
    qint64 edit = 0;
    for (auto _ : state) {
        const QString code = codeEdit(++edit);
        const auto start = std::chrono::steady_clock::now();
        const bool written = store.setString(QStringLiteral("code0"), code);
        samples.add(std::chrono::steady_clock::now() - start, state);
        if (!written) {
            state.SkipWithError("write failed");
            break;
        }
    }
    samples.report(state);
}

// The floor under any durable write on this disk: one 4 KiB page written and synced.
void diskSync(benchmark::State &state)
{
    QTemporaryDir dir(benchFolderTemplate());
    QFile file(dir.filePath(QStringLiteral("page")));
    if (!file.open(QIODevice::ReadWrite | QIODevice::Unbuffered)) {
        state.SkipWithError("no file");
        return;
    }
    const QByteArray page(4096, 'x');
    Samples samples;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        file.seek(0);
        file.write(page);
        ::fdatasync(file.handle());
        samples.add(std::chrono::steady_clock::now() - start, state);
    }
    samples.report(state);
}

} // namespace

BENCHMARK(diskSync)->Iterations(1000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(storeWrite)
    ->ArgName("gallery20MB")
    ->Arg(0)
    ->Arg(1)
    ->Iterations(2000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
