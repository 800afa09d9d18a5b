#include "profile/PreferenceEncoding.h"

#include <QCborArray>
#include <QCborMap>
#include <QCborValue>

#include <cmath>
#include <limits>

namespace {

enum class Kind { String, Integer, Real, Boolean, Data, Array, Dictionary };

const char *kindName(Kind kind)
{
    switch (kind) {
    case Kind::String: return "string";
    case Kind::Integer: return "integer";
    case Kind::Real: return "real";
    case Kind::Boolean: return "boolean";
    case Kind::Data: return "data";
    case Kind::Array: return "array";
    case Kind::Dictionary: return "dictionary";
    }
    return "";
}

std::optional<Kind> kindOf(const QVariant &v)
{
    switch (v.typeId()) {
    case QMetaType::QString:
        return Kind::String;
    case QMetaType::Bool:
        return Kind::Boolean;
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return Kind::Integer;
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        if (v.toULongLong() <= quint64(std::numeric_limits<qint64>::max()))
            return Kind::Integer;
        return std::nullopt;
    case QMetaType::Float:
    case QMetaType::Double:
        return Kind::Real;
    case QMetaType::QByteArray:
        return Kind::Data;
    default:
        break;
    }
    if (v.canConvert<QVariantMap>())
        return Kind::Dictionary;
    if (v.canConvert<QVariantList>())
        return Kind::Array;
    return std::nullopt;
}

std::optional<QCborValue> toCbor(const QVariant &v)
{
    const std::optional<Kind> kind = kindOf(v);
    if (!kind)
        return std::nullopt;
    switch (*kind) {
    case Kind::String: return QCborValue(v.toString());
    case Kind::Integer: return QCborValue(v.toLongLong());
    case Kind::Real: return QCborValue(v.toDouble());
    case Kind::Boolean: return QCborValue(v.toBool());
    case Kind::Data: return QCborValue(v.toByteArray());
    case Kind::Array: {
        QCborArray array;
        for (const QVariant &element : v.toList()) {
            const std::optional<QCborValue> encoded = toCbor(element);
            if (!encoded)
                return std::nullopt;
            array.append(*encoded);
        }
        return QCborValue(array);
    }
    case Kind::Dictionary: {
        QCborMap map;
        const QVariantMap entries = v.toMap();
        for (auto it = entries.cbegin(); it != entries.cend(); ++it) {
            const std::optional<QCborValue> encoded = toCbor(it.value());
            if (!encoded)
                return std::nullopt;
            map.insert(it.key(), *encoded);
        }
        return QCborValue(map);
    }
    }
    return std::nullopt;
}

// Anything outside the kinds the store writes makes the whole value unreadable.
QVariant fromCbor(const QCborValue &v)
{
    if (v.isInteger())
        return QVariant::fromValue(v.toInteger());
    if (v.isDouble())
        return v.toDouble();
    if (v.isString())
        return v.toString();
    if (v.isByteArray())
        return v.toByteArray();
    if (v.isBool())
        return v.toBool();
    if (v.isArray()) {
        QVariantList elements;
        for (const QCborValue &element : v.toArray()) {
            QVariant decoded = fromCbor(element);
            if (!decoded.isValid())
                return {};
            elements.append(std::move(decoded));
        }
        return elements;
    }
    if (v.isMap()) {
        QVariantMap entries;
        const QCborMap map = v.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it) {
            QVariant decoded = fromCbor(it.value());
            if (!it.key().isString() || !decoded.isValid())
                return {};
            entries.insert(it.key().toString(), std::move(decoded));
        }
        return entries;
    }
    return {};
}

QVariant decodeContainer(const QVariant &column, bool wantMap)
{
    if (column.typeId() != QMetaType::QByteArray)
        return {};
    QCborParserError error;
    const QCborValue value = QCborValue::fromCbor(column.toByteArray(), &error);
    if (error.error != QCborError::NoError || value.isMap() != wantMap || (!wantMap && !value.isArray()))
        return {};
    return fromCbor(value);
}

} // namespace

std::optional<EncodedPreference> encodePreference(const QVariant &value)
{
    const std::optional<Kind> kind = kindOf(value);
    if (!kind)
        return std::nullopt;
    const QString name = QString::fromLatin1(kindName(*kind));
    switch (*kind) {
    case Kind::String:
        return EncodedPreference{name, value.toString()};
    case Kind::Integer:
        return EncodedPreference{name, value.toLongLong()};
    case Kind::Real:
        // SQLite keeps NaN as NULL, so it could not come back as a real.
        if (std::isnan(value.toDouble()))
            return std::nullopt;
        return EncodedPreference{name, value.toDouble()};
    case Kind::Boolean:
        return EncodedPreference{name, qint64(value.toBool() ? 1 : 0)};
    case Kind::Data:
        return EncodedPreference{name, value.toByteArray()};
    case Kind::Array:
    case Kind::Dictionary: {
        const std::optional<QCborValue> encoded = toCbor(value);
        if (!encoded)
            return std::nullopt;
        return EncodedPreference{name, encoded->toCbor()};
    }
    }
    return std::nullopt;
}

QVariant decodePreference(const QString &kind, const QVariant &column)
{
    const int type = column.typeId();
    // A null column is how SQLite hands back an empty text or blob.
    const bool null = column.isNull();
    if (kind == QLatin1String(kindName(Kind::String))) {
        if (type == QMetaType::QString)
            return column.toString();
        return null ? QVariant(QString()) : QVariant();
    }
    if (kind == QLatin1String(kindName(Kind::Data))) {
        if (type == QMetaType::QByteArray)
            return column.toByteArray();
        return null ? QVariant(QByteArray()) : QVariant();
    }
    if (kind == QLatin1String(kindName(Kind::Integer)))
        return type == QMetaType::LongLong ? column : QVariant();
    if (kind == QLatin1String(kindName(Kind::Real))) {
        if (type == QMetaType::Double || type == QMetaType::LongLong)
            return column.toDouble();
        return {};
    }
    if (kind == QLatin1String(kindName(Kind::Boolean))) {
        if (type == QMetaType::LongLong && (column.toLongLong() == 0 || column.toLongLong() == 1))
            return column.toLongLong() == 1;
        return {};
    }
    if (kind == QLatin1String(kindName(Kind::Array)))
        return decodeContainer(column, false);
    if (kind == QLatin1String(kindName(Kind::Dictionary)))
        return decodeContainer(column, true);
    return {};
}
