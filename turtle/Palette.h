#pragma once

#include <QColor>
#include <QHash>
#include <QString>

// The shared colours: every screen and the turtle's colour names take them from here.
namespace colors {

inline const QColor ink = QColor::fromRgbF(0.13f, 0.16f, 0.25f);
inline const QColor violet = QColor::fromRgbF(0.42f, 0.28f, 0.88f);
inline const QColor mint = QColor::fromRgbF(0.78f, 0.95f, 0.86f);

} // namespace colors

// The nine colour names a program can choose, and the colour each one draws in.
const QHash<QString, QColor> &palette();

// The colour of a stroke's colour name; a name outside the palette draws violet.
QColor strokeColor(const QString &name);
