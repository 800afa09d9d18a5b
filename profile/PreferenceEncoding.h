#pragma once

#include <QString>
#include <QVariant>

#include <optional>

// One stored value as a database row keeps it: the name of its kind, and a column value in
// one of SQLite's own types. Arrays and dictionaries are CBOR, which keeps every element's type.
struct EncodedPreference
{
    QString kind;
    QVariant column;
};

// Nothing for a value (or an element of it) that the store cannot hold.
std::optional<EncodedPreference> encodePreference(const QVariant &value);

// An invalid QVariant when the row does not hold a well-formed value of its kind.
QVariant decodePreference(const QString &kind, const QVariant &column);
