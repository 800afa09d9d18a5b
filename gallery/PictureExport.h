#pragma once

#include "turtle/Stroke.h"

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QList>
#include <QSize>
#include <QString>

// Every exported picture has this size in pixels, one pixel per point.
inline constexpr QSize pictureSize{1200, 1000};

// The drawing alone (no guide, grid or turtle) on `background`, fitted to the picture, on a
// transparent canvas so the rounded corners stay see-through.
QImage renderPicture(const QList<Stroke> &strokes, const QColor &background);

// renderPicture encoded as PNG. Throws LogoError with the child's message when rendering or
// encoding gives nothing.
QByteArray pictureData(const QList<Stroke> &strokes, const QColor &background);

// The same drawing as renderPicture as an SVG document: one line per stroke, in vectors. Throws
// LogoError with the child's message when nothing comes out.
QByteArray drawingSvg(const QList<Stroke> &strokes, const QColor &background);

// A plain (not atomic) write that replaces any file at `path`; false when it cannot be written.
bool writePicture(const QString &path, const QByteArray &png);

// Where the save dialog opens: the user's pictures folder, made when it is missing, else the
// home folder. Always a folder that exists.
QString exportFolder();
