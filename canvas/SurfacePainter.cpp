#include "canvas/SurfacePainter.h"

#include "turtle/Palette.h"

#include <QPainter>
#include <QPainterPath>
#include <QPen>

#include <algorithm>
#include <cmath>

namespace {

// The empty drawing's box: home sits below the centre, leaving room above for a first FORWARD.
constexpr double boxMinX = -160;
constexpr double boxMaxX = 160;
constexpr double boxMinY = -200;
constexpr double boxMaxY = 130;
constexpr double margins = 70;
constexpr double smallestScale = 0.001;

constexpr double cornerRadius = 16;
constexpr int gridStart = 16;
constexpr int gridStep = 22;
constexpr double dotSize = 2;
constexpr double turtleSize = 56;

QColor faded(QColor color, float opacity)
{
    color.setAlphaF(opacity);
    return color;
}

QPainterPath framePath(QSizeF size)
{
    QPainterPath frame;
    frame.addRoundedRect(QRectF(QPointF(0, 0), size), cornerRadius, cornerRadius);
    return frame;
}

// Every layer starts from the same painter settings, so painting the layers apart gives the
// same pixels as painting them together.
void startLayer(QPainter &painter)
{
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, true);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setOpacity(1);
}

void clipToFrame(QPainter &painter, QSizeF size)
{
    painter.setClipPath(framePath(size), painter.hasClipping() ? Qt::IntersectClip : Qt::ReplaceClip);
}

bool paintable(QSizeF size)
{
    return size.width() > 0 && size.height() > 0;
}

} // namespace

SurfaceFit fitSurface(QSizeF size, const QList<Stroke> &bounds, const QList<Stroke> &ghost)
{
    double minX = boxMinX, maxX = boxMaxX, minY = boxMinY, maxY = boxMaxY;
    // The origin is always inside the box, so it needs no gathering of its own.
    const auto gather = [&](QPointF p) {
        // A point at infinity cannot be fitted; leaving it out keeps the rest of the drawing visible.
        if (!std::isfinite(p.x()) || !std::isfinite(p.y()))
            return;
        minX = std::min(minX, p.x());
        maxX = std::max(maxX, p.x());
        minY = std::min(minY, p.y());
        maxY = std::max(maxY, p.y());
    };
    for (const QList<Stroke> *strokes : {&bounds, &ghost}) {
        for (const Stroke &stroke : *strokes) {
            gather(stroke.from);
            gather(stroke.to);
        }
    }

    SurfaceFit fit;
    fit.scale = std::max(smallestScale,
                         std::min((size.width() - margins) / (maxX - minX), (size.height() - margins) / (maxY - minY)));
    fit.offsetX = size.width() / 2 - (minX + maxX) / 2 * fit.scale;
    fit.offsetY = size.height() / 2 - (minY + maxY) / 2 * fit.scale;
    return fit;
}

void paintSurfaceBackdrop(QPainter &painter, QSizeF size, const SurfaceInputs &inputs, const SurfaceFit &fit)
{
    if (!paintable(size))
        return;
    painter.save();
    startLayer(painter);
    // Filled before clipping, so the corners' smooth edge is not faded a second time by the clip.
    painter.fillPath(framePath(size), inputs.background);
    clipToFrame(painter, size);

    // Grid dots are in view points: they stay put whatever the drawing's scale.
    if (inputs.grid) {
        QPainterPath dots;
        for (int y = gridStart; y < size.height(); y += gridStep) {
            for (int x = gridStart; x < size.width(); x += gridStep)
                dots.addEllipse(QRectF(x, y, dotSize, dotSize));
        }
        painter.fillPath(dots, faded(colors::ink, 0.1f));
    }

    if (!inputs.ghost.isEmpty()) {
        QPen guide(faded(colors::ink, 0.19f), 2, Qt::CustomDashLine, Qt::RoundCap, Qt::RoundJoin);
        // Dash lengths count in pen widths: 2.5 widths of a 2-point pen make 5 points.
        guide.setDashPattern({2.5, 2.5});
        guide.setDashOffset(0);
        painter.setPen(guide);
        for (const Stroke &stroke : inputs.ghost)
            painter.drawLine(fit.map(stroke.from), fit.map(stroke.to));
    }
    painter.restore();
}

void paintSurfaceStrokes(QPainter &painter, QSizeF size, const SurfaceFit &fit, std::span<const Stroke> strokes)
{
    if (!paintable(size) || strokes.empty())
        return;
    painter.save();
    startLayer(painter);
    clipToFrame(painter, size);
    QPen pen(Qt::SolidLine);
    pen.setCapStyle(Qt::RoundCap);
    pen.setJoinStyle(Qt::RoundJoin);
    pen.setMiterLimit(10);
    for (const Stroke &stroke : strokes) {
        pen.setColor(strokeColor(stroke.color));
        // At least one point, so thin lines survive a large drawing scaled down (and 0 would be cosmetic).
        pen.setWidthF(std::max(1.0, stroke.width * fit.scale));
        painter.setPen(pen);
        painter.drawLine(fit.map(stroke.from), fit.map(stroke.to));
    }
    painter.restore();
}

void paintSurfaceTurtle(QPainter &painter, QSizeF size, const SurfaceFit &fit, const SurfaceInputs &inputs)
{
    if (!paintable(size) || !inputs.point || inputs.turtle.isNull())
        return;
    painter.save();
    startLayer(painter);
    clipToFrame(painter, size);
    // Multiply lets the picture's white background vanish into the canvas colour.
    painter.setCompositionMode(QPainter::CompositionMode_Multiply);
    painter.translate(fit.map(*inputs.point));
    painter.rotate(inputs.heading);
    painter.drawImage(QRectF(-turtleSize / 2, -turtleSize / 2, turtleSize, turtleSize), inputs.turtle);
    painter.restore();
}

void paintSurface(QPainter &painter, QSizeF size, const SurfaceInputs &inputs)
{
    const SurfaceFit fit = fitSurface(size, inputs.bounds, inputs.ghost);
    paintSurfaceBackdrop(painter, size, inputs, fit);
    paintSurfaceStrokes(painter, size, fit, inputs.strokes);
    paintSurfaceTurtle(painter, size, fit, inputs);
}
