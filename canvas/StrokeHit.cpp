#include "canvas/StrokeHit.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

double distanceToSegment(QPointF p, QPointF a, QPointF b)
{
    const QPointF ab = b - a;
    const double lengthSquared = QPointF::dotProduct(ab, ab);
    const double t = lengthSquared > 0 ? std::clamp(QPointF::dotProduct(p - a, ab) / lengthSquared, 0.0, 1.0) : 0.0;
    const QPointF closest = a + t * ab;
    return std::hypot(p.x() - closest.x(), p.y() - closest.y());
}

} // namespace

qsizetype strokeAt(const QList<Stroke> &strokes, const SurfaceFit &fit, QPointF viewPoint, double reach)
{
    // Work in turtle units: one division instead of mapping every stroke.
    const QPointF point((viewPoint.x() - fit.offsetX) / fit.scale, (viewPoint.y() - fit.offsetY) / fit.scale);
    qsizetype best = -1;
    double bestGap = std::numeric_limits<double>::infinity();
    for (qsizetype k = strokes.size() - 1; k >= 0; --k) {
        const Stroke &stroke = strokes.at(k);
        // Painted at least one point wide, as the surface draws it.
        const double halfWidth = std::max(stroke.width * fit.scale, 1.0) / 2;
        const double gap = distanceToSegment(point, stroke.from, stroke.to) * fit.scale - halfWidth;
        if (gap <= 0)
            return k;
        if (gap <= reach && gap < bestGap) {
            best = k;
            bestGap = gap;
        }
    }
    return best;
}
