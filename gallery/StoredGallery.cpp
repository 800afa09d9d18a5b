#include "gallery/StoredGallery.h"

#include "gallery/CreationCodec.h"

#include <QSet>
#include <QtConcurrent/QtConcurrentRun>

void StoredGallery::setStored(std::optional<QByteArray> bytes)
{
    // A decoding still under way works on its own copy and is simply no longer asked.
    m_decoding = {};
    m_known = true;
    m_bytes = std::move(bytes);
    m_decoded = !m_bytes;
    m_readable = true;
    m_creations.clear();
}

void StoredGallery::setWritten(QByteArray bytes, QList<Creation> creations)
{
    m_decoding = {};
    m_known = true;
    m_bytes = std::move(bytes);
    m_decoded = true;
    m_readable = true;
    m_creations = std::move(creations);
}

void StoredGallery::decodeAhead()
{
    if (m_decoded || m_decoding.isValid() || !m_bytes)
        return;
    m_decoding = QtConcurrent::run([bytes = *m_bytes] { return decodeCreations(bytes); });
}

bool StoredGallery::isReadable()
{
    settle();
    return m_readable;
}

const QList<Creation> &StoredGallery::creations()
{
    settle();
    return m_creations;
}

void StoredGallery::settle()
{
    if (m_decoded || !m_bytes)
        return;
    std::optional<QList<Creation>> decoded = m_decoding.isValid() ? m_decoding.result() : decodeCreations(*m_bytes);
    m_decoding = {};
    m_decoded = true;
    m_readable = decoded.has_value();
    m_creations = std::move(decoded).value_or(QList<Creation>());
}

QList<Creation> mergeCreations(const Creation &creation, const QList<Creation> &stored, const QList<Creation> &known)
{
    QList<Creation> merged{creation};
    merged.append(stored);
    QSet<QUuid> ids;
    for (const Creation &each : merged)
        ids.insert(each.id);
    for (const Creation &each : known) {
        if (!ids.contains(each.id))
            merged.append(each);
    }
    return merged;
}
