// Arbitrary bytes as a stored gallery. Whatever decodes must encode to bytes that decode to the
// same list, and take a new creation in front of those bytes as a save puts it there.
#include "gallery/CreationCodec.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const std::optional<QList<Creation>> decoded = decodeCreations(bytes);
    if (!decoded)
        return 0;
    const QByteArray encoded = encodeCreations(*decoded);
    if (decodeCreations(encoded) != decoded)
        __builtin_trap();

    Creation saved;
    saved.id = QUuid(QStringLiteral("{0f8fad5b-d9cb-469f-a165-70867728950e}"));
    saved.title = QStringLiteral("Fresh");
    saved.code = QStringLiteral("fd 10");
    saved.date = QDateTime::fromMSecsSinceEpoch(1700000000250, Qt::UTC);
    saved.strokes = {Stroke{QPointF(0, 0), QPointF(0, -10), QStringLiteral("pink"), 4}};
    QList<Creation> expected{saved};
    expected.append(*decoded);
    if (decodeCreations(prependCreation(saved, encoded)) != expected)
        __builtin_trap();
    return 0;
}
