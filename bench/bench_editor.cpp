// The editor and stage links: which stroke a click means, among the most strokes a program draws.
#include "canvas/StrokeHit.h"
#include "canvas/SurfacePainter.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <numbers>

namespace {

// 2,000 strokes of a widening spiral that crosses itself.
QList<Stroke> spiral()
{
    QList<Stroke> strokes;
    QPointF point;
    for (int i = 0; i < 2000; ++i) {
        const double radians = i * 7.3 * std::numbers::pi / 180;
        const QPointF next = point + QPointF(std::sin(radians), -std::cos(radians)) * (2 + i * 0.15);
        strokes.append(Stroke{point, next, QStringLiteral("blue"), double(1 + i % 20)});
        point = next;
    }
    return strokes;
}

// A click on the first stroke, under every later one's reach test: the whole list is walked.
void strokeUnderClick(benchmark::State &state)
{
    const QList<Stroke> strokes = spiral();
    const SurfaceFit fit = fitSurface(QSizeF(640, 340), strokes, {});
    const QPointF click = fit.map((strokes.first().from + strokes.first().to) / 2);
    for (auto _ : state)
        benchmark::DoNotOptimize(strokeAt(strokes, fit, click, 6));
}

} // namespace

BENCHMARK(strokeUnderClick)->Unit(benchmark::kMicrosecond);
