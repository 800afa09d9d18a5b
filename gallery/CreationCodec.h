#pragma once

#include "gallery/Creation.h"

#include <QByteArray>
#include <QList>

#include <optional>

// The stored form of the gallery: one compact JSON array, newest first. Each creation is an
// object with the keys id, title, code, date, turtle, theme and strokes, written in that order;
// the date counts seconds from 2001-01-01 00:00 UTC.
QByteArray encodeCreations(const QList<Creation> &creations);

// The encoded list with `creation` put first, reusing `encodedList` (the encoding of the rest,
// as encodeCreations wrote it) instead of encoding every earlier creation again.
QByteArray prependCreation(const Creation &creation, const QByteArray &encodedList);

// Any key order and either UUID case are read; unknown keys are ignored. One creation that
// lacks a key, has a value of the wrong type or a malformed UUID makes the whole list unreadable.
std::optional<QList<Creation>> decodeCreations(const QByteArray &data);
