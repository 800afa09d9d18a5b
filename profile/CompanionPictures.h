#pragma once

#include <QImage>
#include <QList>

// Cuts a 2 × 2 sheet into its four companion pictures, row by row, each scaled to
// 200 × 200. A sheet that cannot be cut gives no pictures.
QList<QImage> cutCompanionPictures(const QImage &sheet);
