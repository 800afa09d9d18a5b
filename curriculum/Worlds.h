#pragma once

#include "curriculum/World.h"

#include <QList>

// The five worlds in map order.
const QList<World> &worlds();
