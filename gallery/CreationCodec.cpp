#include "gallery/CreationCodec.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <cmath>
#include <limits>

namespace {

// Seconds between the Unix epoch and 2001-01-01 00:00 UTC, where stored dates count from.
constexpr double referenceDateOffset = 978307200.0;

// One value as compact JSON text. QJsonObject sorts its keys, so objects are assembled by hand
// to keep the written key order.
QByteArray jsonText(const QJsonValue &value)
{
    const QByteArray wrapped = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return wrapped.mid(1, wrapped.size() - 2);
}

QByteArray encodeCreation(const Creation &creation)
{
    QJsonArray strokes;
    for (const Stroke &stroke : creation.strokes)
        strokes.append(stroke.toJson());
    const double seconds = double(creation.date.toMSecsSinceEpoch()) / 1000.0 - referenceDateOffset;
    return "{\"id\":" + jsonText(creation.id.toString(QUuid::WithoutBraces).toUpper())
        + ",\"title\":" + jsonText(creation.title) + ",\"code\":" + jsonText(creation.code)
        + ",\"date\":" + jsonText(seconds) + ",\"turtle\":" + jsonText(creation.turtle)
        + ",\"theme\":" + jsonText(creation.theme) + ",\"strokes\":"
        + QJsonDocument(strokes).toJson(QJsonDocument::Compact) + '}';
}

std::optional<int> wholeNumber(const QJsonValue &value)
{
    if (!value.isDouble())
        return std::nullopt;
    const double number = value.toDouble();
    if (number != std::trunc(number) || number < std::numeric_limits<int>::min()
        || number > std::numeric_limits<int>::max())
        return std::nullopt;
    return int(number);
}

std::optional<QUuid> canonicalUuid(const QJsonValue &value)
{
    static const QRegularExpression canonical(
        QStringLiteral("^[0-9A-Fa-f]{8}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{12}$"));
    if (!value.isString() || !canonical.match(value.toString()).hasMatch())
        return std::nullopt;
    return QUuid::fromString(value.toString());
}

std::optional<Creation> decodeCreation(const QJsonValue &value)
{
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject object = value.toObject();
    const auto id = canonicalUuid(object.value(QStringLiteral("id")));
    const QJsonValue title = object.value(QStringLiteral("title"));
    const QJsonValue code = object.value(QStringLiteral("code"));
    const QJsonValue date = object.value(QStringLiteral("date"));
    const auto turtle = wholeNumber(object.value(QStringLiteral("turtle")));
    const auto theme = wholeNumber(object.value(QStringLiteral("theme")));
    const QJsonValue strokes = object.value(QStringLiteral("strokes"));
    if (!id || !title.isString() || !code.isString() || !date.isDouble() || !turtle || !theme || !strokes.isArray())
        return std::nullopt;

    Creation creation;
    creation.id = *id;
    creation.title = title.toString();
    creation.code = code.toString();
    creation.date = QDateTime::fromMSecsSinceEpoch(std::llround((date.toDouble() + referenceDateOffset) * 1000.0),
                                                   Qt::UTC);
    creation.turtle = *turtle;
    creation.theme = *theme;
    const QJsonArray strokeArray = strokes.toArray();
    creation.strokes.reserve(strokeArray.size());
    for (const QJsonValue &strokeValue : strokeArray) {
        const auto stroke = strokeValue.isObject() ? Stroke::fromJson(strokeValue.toObject()) : std::nullopt;
        if (!stroke)
            return std::nullopt;
        creation.strokes.append(*stroke);
    }
    return creation;
}

} // namespace

QByteArray encodeCreations(const QList<Creation> &creations)
{
    QByteArray data = "[";
    for (const Creation &creation : creations) {
        if (data.size() > 1)
            data += ',';
        data += encodeCreation(creation);
    }
    return data + ']';
}

std::optional<QList<Creation>> decodeCreations(const QByteArray &data)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(data, &error);
    if (error.error != QJsonParseError::NoError || !document.isArray())
        return std::nullopt;
    const QJsonArray array = document.array();
    QList<Creation> creations;
    creations.reserve(array.size());
    for (const QJsonValue &value : array) {
        const auto creation = decodeCreation(value);
        if (!creation)
            return std::nullopt;
        creations.append(*creation);
    }
    return creations;
}

QByteArray prependCreation(const Creation &creation, const QByteArray &encodedList)
{
    const QByteArray first = encodeCreation(creation);
    if (encodedList.size() <= 2) // "[]"
        return '[' + first + ']';
    // One copy of the list: it may be megabytes long.
    QByteArray data;
    data.reserve(first.size() + encodedList.size() + 1);
    data.append('[').append(first).append(',').append(QByteArrayView(encodedList).sliced(1));
    return data;
}
