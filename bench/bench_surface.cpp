// The drawing surface at the largest drawing a program can make: stage frames, and the export.
#include "curriculum/Themes.h"
#include "gallery/PictureExport.h"
#include "turtle/Palette.h"
#include "canvas/SurfacePainter.h"

#include <benchmark/benchmark.h>

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

namespace {

constexpr int mostStrokes = 2000;

// A widening spiral that crosses itself, in every palette colour and several widths.
QList<Stroke> drawingOf(int count)
{
    const QStringList colours = palette().keys();
    QList<Stroke> strokes;
    QPointF point(0, 0);
    double heading = 0;
    for (int i = 0; i < count; ++i) {
        const double length = 2 + i * 0.15;
        const double radians = heading * M_PI / 180;
        const QPointF next = point + QPointF(length * std::sin(radians), -length * std::cos(radians));
        strokes.append(Stroke{point, next, colours.at(i / 50 % colours.size()), double(1 + i / 100 % 20)});
        point = next;
        heading += 61;
    }
    return strokes;
}

// A companion picture: white around a dark shell, as the multiply blend expects.
QImage companion()
{
    QImage picture(128, 128, QImage::Format_ARGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(QColor(40, 120, 70));
    painter.drawEllipse(QRectF(24, 24, 80, 80));
    return picture;
}

// Nearest-rank 95th percentile of the repetitions.
double percentile95(const std::vector<double> &values)
{
    std::vector<double> sorted = values;
    std::sort(sorted.begin(), sorted.end());
    return sorted.at(std::size_t(std::ceil(0.95 * double(sorted.size()))) - 1);
}

void paintFrame(benchmark::State &state, const SurfaceInputs &inputs)
{
    QImage frame(900, 340, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        frame.fill(Qt::transparent);
        QPainter painter(&frame);
        paintSurface(painter, QSizeF(frame.size()), inputs);
        painter.end();
        benchmark::DoNotOptimize(frame.constBits());
    }
}

// 2,000 strokes alone.
void surfaceFrameStrokes(benchmark::State &state)
{
    const QList<Stroke> drawing = drawingOf(mostStrokes);
    paintFrame(state, {drawing, {}, drawing, {}, {}, 0, themes().at(0).color, false});
}

// What the stage shows at the end of the largest run: grid, a mission target, the turtle.
void surfaceFrameStage(benchmark::State &state)
{
    const QList<Stroke> drawing = drawingOf(mostStrokes);
    const QList<Stroke> target = drawingOf(200);
    paintFrame(state, {drawing, target, drawing + target, drawing.last().to, companion(), 61.0 * mostStrokes,
                       themes().at(2).color, true});
}

// A stage frame during a run, as the drawing surface makes it: one new stroke onto the kept
// layer of 2,000, the layer copied into the frame, the turtle over it.
void surfaceFrameGrowing(benchmark::State &state)
{
    const QList<Stroke> drawing = drawingOf(mostStrokes);
    const QList<Stroke> target = drawingOf(200);
    const SurfaceInputs inputs{drawing, target, drawing + target, drawing.last().to, companion(), 61.0 * mostStrokes,
                               themes().at(2).color, true};
    const QSizeF size(900, 340);
    const SurfaceFit fit = fitSurface(size, inputs.bounds, inputs.ghost);
    QImage layer(size.toSize(), QImage::Format_ARGB32_Premultiplied);
    layer.fill(Qt::transparent);
    {
        QPainter painter(&layer);
        paintSurfaceBackdrop(painter, size, inputs, fit);
        paintSurfaceStrokes(painter, size, fit, inputs.strokes);
    }
    QImage frame(layer.size(), QImage::Format_ARGB32_Premultiplied);
    qsizetype next = 0;
    for (auto _ : state) {
        QPainter onLayer(&layer);
        paintSurfaceStrokes(onLayer, size, fit, std::span(drawing).subspan(next++ % drawing.size(), 1));
        onLayer.end();
        QPainter painter(&frame);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage(QPointF(0, 0), layer);
        paintSurfaceTurtle(painter, size, fit, inputs);
        painter.end();
        benchmark::DoNotOptimize(frame.constBits());
    }
}

// Render and PNG encoding, as the export button does before writing the file.
void pictureExport(benchmark::State &state)
{
    const QList<Stroke> drawing = drawingOf(mostStrokes);
    for (auto _ : state) {
        const QByteArray png = pictureData(drawing, themes().at(1).color);
        benchmark::DoNotOptimize(png.constData());
        state.counters["pngKB"] = double(png.size()) / 1000;
    }
}

// The render alone, to tell painting from encoding.
void pictureRender(benchmark::State &state)
{
    const QList<Stroke> drawing = drawingOf(mostStrokes);
    for (auto _ : state) {
        const QImage picture = renderPicture(drawing, themes().at(1).color);
        benchmark::DoNotOptimize(picture.constBits());
    }
}

} // namespace

BENCHMARK(surfaceFrameStrokes)->Unit(benchmark::kMillisecond)->ComputeStatistics("p95", percentile95);
BENCHMARK(surfaceFrameStage)->Unit(benchmark::kMillisecond)->ComputeStatistics("p95", percentile95);
BENCHMARK(surfaceFrameGrowing)->Unit(benchmark::kMillisecond)->ComputeStatistics("p95", percentile95);
BENCHMARK(pictureExport)->Unit(benchmark::kMillisecond)->ComputeStatistics("p95", percentile95);
BENCHMARK(pictureRender)->Unit(benchmark::kMillisecond)->ComputeStatistics("p95", percentile95);
