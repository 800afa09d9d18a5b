#include "gallery/PictureCode.h"

#include <QtEndian>

#include <zlib.h>

namespace {

const QByteArray signature("\x89PNG\r\n\x1a\n", 8);
const QByteArray codeKey("Marble Cove code");
const QByteArray titleKey("Title");
const QByteArray companionKey("Marble Cove companion");
constexpr qsizetype chunkFrame = 12; // length, type and checksum

quint32 checksum(QByteArrayView typeAndData)
{
    return quint32(crc32(0, reinterpret_cast<const Bytef *>(typeAndData.data()), uInt(typeAndData.size())));
}

QByteArray chunk(QByteArrayView type, const QByteArray &data)
{
    const QByteArray body = type.toByteArray() + data;
    QByteArray out(4, '\0');
    qToBigEndian(quint32(data.size()), out.data());
    out += body;
    QByteArray crc(4, '\0');
    qToBigEndian(checksum(body), crc.data());
    return out + crc;
}

// keyword, no compression, no language tag, no translated keyword, then the UTF-8 text.
QByteArray textChunk(const QByteArray &key, const QString &text)
{
    return chunk("iTXt", key + QByteArray("\0\0\0\0\0", 5) + text.toUtf8());
}

struct ITextChunk
{
    QByteArrayView key;
    QString text;
};

// keyword, compression flag and method, language, translated keyword, text. A compressed
// text is not one of ours, so it reads as no key at all.
ITextChunk parseText(QByteArrayView data)
{
    const qsizetype keyEnd = data.indexOf('\0');
    if (keyEnd < 0 || data.size() < keyEnd + 3 || data[keyEnd + 1] != '\0')
        return {};
    qsizetype at = keyEnd + 3;
    for (int field = 0; field < 2; ++field) {
        const qsizetype end = data.sliced(at).indexOf('\0');
        if (end < 0)
            return {};
        at += end + 1;
    }
    return {data.first(keyEnd), QString::fromUtf8(data.sliced(at))};
}

} // namespace

QByteArray embedPictureCode(const QByteArray &png, const PictureCode &picture)
{
    // The header chunk comes first and always holds 13 bytes.
    const qsizetype afterHeader = signature.size() + chunkFrame + 13;
    if (!png.startsWith(signature) || png.size() < afterHeader)
        return png;
    QByteArray out = png.left(afterHeader);
    out += textChunk(codeKey, picture.code);
    out += textChunk(titleKey, picture.title);
    out += textChunk(companionKey, picture.companion);
    out += png.mid(afterHeader);
    return out;
}

PictureReading readPictureCode(const QByteArray &file)
{
    PictureReading reading;
    if (!file.startsWith(signature))
        return reading;
    bool hasCode = false;
    for (qsizetype at = signature.size(); file.size() - at >= chunkFrame;) {
        const quint32 length = qFromBigEndian<quint32>(file.constData() + at);
        if (length > quint32(file.size() - at - chunkFrame))
            return reading;
        const QByteArrayView typeAndData(file.constData() + at + 4, 4 + qsizetype(length));
        if (qFromBigEndian<quint32>(typeAndData.data() + typeAndData.size()) != checksum(typeAndData))
            return reading;
        const QByteArrayView type = typeAndData.first(4);
        if (type == "IEND") {
            reading.status = hasCode ? PictureReading::Read : PictureReading::Foreign;
            return reading;
        }
        if (type == "iTXt") {
            const ITextChunk text = parseText(typeAndData.sliced(4));
            if (text.key == codeKey) {
                reading.picture.code = text.text;
                hasCode = true;
            } else if (text.key == titleKey) {
                reading.picture.title = text.text;
            } else if (text.key == companionKey) {
                reading.picture.companion = text.text;
            }
        }
        at += chunkFrame + length;
    }
    return reading;
}
