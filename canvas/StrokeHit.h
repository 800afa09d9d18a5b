#pragma once

#include "canvas/SurfacePainter.h"
#include "turtle/Stroke.h"

#include <QList>
#include <QPointF>

// The stroke a click at `viewPoint` means, on a surface fitted as `fit`: one the point lies on
// (the latest drawn wins where strokes overlap), else the nearest whose painted edge is within
// `reach` points. -1 when none is that close.
qsizetype strokeAt(const QList<Stroke> &strokes, const SurfaceFit &fit, QPointF viewPoint, double reach);
