#pragma once

#include "turtle/Stroke.h"

#include <QColor>
#include <QImage>
#include <QList>
#include <QPointF>
#include <QSizeF>

#include <optional>
#include <span>

class QPainter;

// Everything a drawing surface shows; the screen, the gallery and the export all fill one in.
struct SurfaceInputs
{
    QList<Stroke> strokes;
    // A faint dashed guide beneath the strokes; its own colours and widths are ignored.
    QList<Stroke> ghost;
    // The extent to fit, so a drawing that grows during a run does not rescale the view.
    QList<Stroke> bounds;
    // The turtle shows only when both its position and its picture are there.
    std::optional<QPointF> point;
    QImage turtle;
    double heading = 0;
    QColor background = Qt::white;
    bool grid = false;
};

// How turtle units land on the view: a uniform scale, then an offset.
struct SurfaceFit
{
    double scale = 1;
    double offsetX = 0;
    double offsetY = 0;

    QPointF map(QPointF turtlePoint) const
    {
        return {offsetX + turtlePoint.x() * scale, offsetY + turtlePoint.y() * scale};
    }

    bool operator==(const SurfaceFit &) const = default;
};

// Fits `bounds`, `ghost` and the origin, never less than the empty drawing's box, with a
// 35-point margin on every side.
SurfaceFit fitSurface(QSizeF size, const QList<Stroke> &bounds, const QList<Stroke> &ghost);

// Paints the whole surface into the rectangle (0, 0, size): the backdrop, the strokes, the turtle.
// The painter's state is restored after each.
void paintSurface(QPainter &painter, QSizeF size, const SurfaceInputs &inputs);

// The three layers of paintSurface, for a view that keeps the first two between frames.
// Background, rounded frame, grid and guide.
void paintSurfaceBackdrop(QPainter &painter, QSizeF size, const SurfaceInputs &inputs, const SurfaceFit &fit);
// Strokes in order, over what is already there.
void paintSurfaceStrokes(QPainter &painter, QSizeF size, const SurfaceFit &fit, std::span<const Stroke> strokes);
// The companion at its point and heading, when both are there.
void paintSurfaceTurtle(QPainter &painter, QSizeF size, const SurfaceFit &fit, const SurfaceInputs &inputs);
