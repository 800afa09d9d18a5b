// Benchmarks run inside a GUI application object: the store's database driver is a plugin, which
// Qt loads only once one exists, and the editor lays out text with the platform's fonts.
#include <benchmark/benchmark.h>

#include <QGuiApplication>

int main(int argc, char **argv)
{
    QGuiApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
