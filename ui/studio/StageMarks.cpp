#include "ui/studio/StageMarks.h"

#include "canvas/StrokeHit.h"
#include "canvas/SurfacePainter.h"
#include "turtle/Palette.h"

#include <QPainter>
#include <QPen>

#include <algorithm>

namespace {

// How far from a line a click still picks it, in points.
constexpr double clickReach = 6;

double paintedWidth(const Stroke &stroke, double scale)
{
    return std::max(stroke.width * scale, 1.0);
}

void drawLine(QPainter &painter, const SurfaceFit &fit, const Stroke &stroke, QPen pen)
{
    pen.setCapStyle(Qt::RoundCap);
    painter.setPen(pen);
    painter.drawLine(fit.map(stroke.from), fit.map(stroke.to));
}

} // namespace

StageMarks::StageMarks(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    setOpaquePainting(false);
    setFillColor(Qt::transparent);
    connect(this, &StageMarks::marksChanged, this, [this] { update(); });
}

template<typename T>
void StageMarks::assign(T &field, const T &value)
{
    if (field == value)
        return;
    field = value;
    emit marksChanged();
}

void StageMarks::setStrokes(const QList<Stroke> &strokes) { assign(m_strokes, strokes); }
void StageMarks::setBounds(const QList<Stroke> &bounds) { assign(m_bounds, bounds); }
void StageMarks::setGhost(const QList<Stroke> &ghost) { assign(m_ghost, ghost); }
void StageMarks::setEmphasis(const QList<int> &emphasis) { assign(m_emphasis, emphasis); }
void StageMarks::setFlash(int flash) { assign(m_flash, flash); }
void StageMarks::setMissing(const QList<Stroke> &missing) { assign(m_missing, missing); }
void StageMarks::setExtra(const QList<Stroke> &extra) { assign(m_extra, extra); }

int StageMarks::strokeAt(qreal x, qreal y) const
{
    const SurfaceFit fit = fitSurface(size(), m_bounds, m_ghost);
    return int(::strokeAt(m_strokes, fit, QPointF(x, y), clickReach));
}

void StageMarks::paint(QPainter *painter)
{
    const SurfaceFit fit = fitSurface(size(), m_bounds, m_ghost);
    painter->setRenderHint(QPainter::Antialiasing);

    // A soft halo under each picked stroke, then the stroke again in its own colour on top.
    const auto standOut = [&](int index, double glow) {
        if (index < 0 || index >= m_strokes.size())
            return;
        const Stroke &stroke = m_strokes.at(index);
        QColor halo = m_emphasisColor;
        halo.setAlphaF(float(glow));
        drawLine(*painter, fit, stroke, QPen(halo, paintedWidth(stroke, fit.scale) + 12));
        drawLine(*painter, fit, stroke,
                 QPen(strokeColor(stroke.color), paintedWidth(stroke, fit.scale)));
    };
    for (const int index : m_emphasis)
        standOut(index, 0.55);
    standOut(m_flash, 0.9);

    // Lines to change: solid with pale stripes; lines missing: dashed. Told apart without colour.
    for (const Stroke &stroke : m_extra) {
        drawLine(*painter, fit, stroke, QPen(m_extraColor, 6));
        QPen stripes(QColor(255, 255, 255, 200), 6);
        stripes.setDashPattern({0.6, 0.9});
        stripes.setCapStyle(Qt::FlatCap);
        painter->setPen(stripes);
        painter->drawLine(fit.map(stroke.from), fit.map(stroke.to));
    }
    for (const Stroke &stroke : m_missing) {
        QPen dashed(m_missingColor, 4);
        dashed.setDashPattern({2, 1.5});
        drawLine(*painter, fit, stroke, dashed);
    }
}
