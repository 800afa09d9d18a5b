#pragma once

#include "gallery/Creation.h"

#include <QByteArray>
#include <QFuture>
#include <QList>

#include <optional>

// The gallery as the store holds it: the stored bytes and the creations they decode to. The
// bytes are decoded at most once, on a worker thread ahead of need or else when first asked.
class StoredGallery
{
public:
    // Whether the stored value has been read yet.
    bool isKnown() const { return m_known; }
    // The value read from the store: its bytes, or nothing when the key is absent.
    void setStored(std::optional<QByteArray> bytes);
    // What was just written: the bytes and the creations they encode.
    void setWritten(QByteArray bytes, QList<Creation> creations);
    // Starts decoding on a worker thread, unless that is done or under way.
    void decodeAhead();

    const std::optional<QByteArray> &bytes() const { return m_bytes; }
    // Whether the bytes decode; absent bytes read as an empty list. Waits for the decoding.
    bool isReadable();
    // The creations, empty when the bytes are unreadable. Waits for the decoding.
    const QList<Creation> &creations();

private:
    void settle();

    bool m_known = false;
    std::optional<QByteArray> m_bytes;
    QFuture<std::optional<QList<Creation>>> m_decoding;
    bool m_decoded = false;
    bool m_readable = true;
    QList<Creation> m_creations;
};

// What a save writes when another window changed the stored list since this one read it: the
// new creation, the stored list in its order, then this window's creations the store lacks.
QList<Creation> mergeCreations(const Creation &creation, const QList<Creation> &stored, const QList<Creation> &known);
