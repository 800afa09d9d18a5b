#pragma once

#include "turtle/Stroke.h"

#include <QtQml/qqmlregistration.h>

// Declares the stroke to QML, so that tooling can check the stroke lists the screens pass
// from Studio to their drawing surfaces.
struct StrokeForeign
{
    Q_GADGET
    QML_FOREIGN(Stroke)
    QML_VALUE_TYPE(stroke)
};
