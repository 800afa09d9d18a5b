#include "ui/studio/DrawingSurface.h"

#include <QPainter>

DrawingSurface::DrawingSurface(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    // The rounded corners must show what lies behind the item.
    setOpaquePainting(false);
    setFillColor(Qt::transparent);
}

SurfaceInputs DrawingSurface::inputs() const
{
    SurfaceInputs inputs = m_inputs;
    if (m_hasPoint)
        inputs.point = m_point;
    return inputs;
}

void DrawingSurface::paint(QPainter *painter)
{
    paintSurface(*painter, size(), inputs());
}

namespace {

// The one shape of every setter: nothing happens unless the value really changes.
template<typename T, typename Signal>
void assign(DrawingSurface *item, T &field, const T &value, Signal changed)
{
    if (field == value)
        return;
    field = value;
    item->update();
    emit(item->*changed)();
}

} // namespace

void DrawingSurface::setStrokes(const QList<Stroke> &strokes)
{
    assign(this, m_inputs.strokes, strokes, &DrawingSurface::strokesChanged);
}

void DrawingSurface::setGhost(const QList<Stroke> &ghost)
{
    assign(this, m_inputs.ghost, ghost, &DrawingSurface::ghostChanged);
}

void DrawingSurface::setBounds(const QList<Stroke> &bounds)
{
    assign(this, m_inputs.bounds, bounds, &DrawingSurface::boundsChanged);
}

void DrawingSurface::setPoint(QPointF point)
{
    assign(this, m_point, point, &DrawingSurface::pointChanged);
}

void DrawingSurface::setHasPoint(bool hasPoint)
{
    assign(this, m_hasPoint, hasPoint, &DrawingSurface::hasPointChanged);
}

void DrawingSurface::setTurtle(const QImage &turtle)
{
    assign(this, m_inputs.turtle, turtle, &DrawingSurface::turtleChanged);
}

void DrawingSurface::setHeading(double heading)
{
    assign(this, m_inputs.heading, heading, &DrawingSurface::headingChanged);
}

void DrawingSurface::setBackground(const QColor &background)
{
    assign(this, m_inputs.background, background, &DrawingSurface::backgroundChanged);
}

void DrawingSurface::setGrid(bool grid)
{
    assign(this, m_inputs.grid, grid, &DrawingSurface::gridChanged);
}
