#include "ui/studio/DrawingSurface.h"

#include <QPaintDevice>
#include <QPainter>

#include <algorithm>
#include <span>

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

// The picture is kept in two parts: a layer holding the backdrop and every stroke painted so far,
// and the turtle drawn over it each frame. While a drawing only grows, a frame paints just its new
// strokes onto the layer; anything else (size, pixel ratio, scale, colours, grid, guide, a drawing
// that changed rather than grew) paints the layer afresh. The layer is painted by the same
// functions as a full paint, with the same transform, so the pixels are the same.
void DrawingSurface::paint(QPainter *painter)
{
    const SurfaceInputs shown = inputs();
    const SurfaceFit fit = fitSurface(size(), shown.bounds, shown.ghost);
    const QPaintDevice *device = painter->device();
    const LayerKey key{QSize(device->width(), device->height()), device->devicePixelRatioF(),
                       painter->worldTransform(), size(), fit, shown.background, shown.grid, shown.ghost};

    const bool grows = key == m_layerKey && shown.strokes.size() >= m_layered.size()
        && std::equal(m_layered.cbegin(), m_layered.cend(), shown.strokes.cbegin());
    if (!grows) {
        m_layerKey = key;
        m_layered.clear();
        m_layer = QImage(key.pixels, QImage::Format_ARGB32_Premultiplied);
        m_layer.setDevicePixelRatio(key.pixelRatio);
        m_layer.fill(Qt::transparent);
    }
    if (m_layer.isNull())
        return;
    if (!grows || shown.strokes.size() > m_layered.size()) {
        QPainter onLayer(&m_layer);
        onLayer.setWorldTransform(key.transform);
        if (!grows)
            paintSurfaceBackdrop(onLayer, size(), shown, fit);
        paintSurfaceStrokes(onLayer, size(), fit, std::span(shown.strokes).subspan(m_layered.size()));
        m_layered = shown.strokes;
    }

    painter->save();
    painter->resetTransform();
    painter->setCompositionMode(QPainter::CompositionMode_Source);
    painter->drawImage(QPointF(0, 0), m_layer);
    painter->restore();
    paintSurfaceTurtle(*painter, size(), fit, shown);
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
