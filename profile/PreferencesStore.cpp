#include "profile/PreferencesStore.h"

#include <limits>

namespace {

std::optional<qint64> asInteger(const QVariant &v)
{
    switch (v.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return v.toLongLong();
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        if (v.toULongLong() <= quint64(std::numeric_limits<qint64>::max()))
            return v.toLongLong();
        return std::nullopt;
    default:
        return std::nullopt;
    }
}

} // namespace

PreferencesStore::~PreferencesStore() = default;

void PreferencesStore::setWriteWatcher(const void *owner, std::function<void()> watcher)
{
    m_watcherOwner = owner;
    m_watcher = std::move(watcher);
}

void PreferencesStore::clearWriteWatcher(const void *owner)
{
    if (m_watcherOwner != owner)
        return;
    m_watcherOwner = nullptr;
    m_watcher = nullptr;
}

void PreferencesStore::notifyWriteWatcher() const
{
    if (m_watcher)
        m_watcher();
}

std::optional<QList<qint64>> PreferencesStore::integerArray(const QString &key) const
{
    return readAs<QList<qint64>>(key, asIntegerArray);
}

std::optional<QList<qint64>> PreferencesStore::asIntegerArray(const QVariant &v)
{
    if (v.typeId() != QMetaType::QVariantList)
        return std::nullopt;
    const QVariantList elements = v.toList();
    QList<qint64> numbers;
    numbers.reserve(elements.size());
    for (const QVariant &element : elements) {
        const std::optional<qint64> number = asInteger(element);
        if (!number)
            return std::nullopt;
        numbers.append(*number);
    }
    return numbers;
}

std::optional<QMap<QString, QString>> PreferencesStore::stringDictionary(const QString &key) const
{
    return readAs<QMap<QString, QString>>(key, asStringDictionary);
}

std::optional<QMap<QString, QString>> PreferencesStore::asStringDictionary(const QVariant &v)
{
    if (v.typeId() != QMetaType::QVariantMap)
        return std::nullopt;
    const QVariantMap entries = v.toMap();
    QMap<QString, QString> texts;
    for (auto it = entries.cbegin(); it != entries.cend(); ++it) {
        if (it.value().typeId() != QMetaType::QString)
            return std::nullopt;
        texts.insert(it.key(), it.value().toString());
    }
    return texts;
}

std::optional<QString> PreferencesStore::string(const QString &key) const
{
    return readAs<QString>(key, [](const QVariant &v) -> std::optional<QString> {
        return v.typeId() == QMetaType::QString ? std::optional(v.toString()) : std::nullopt;
    });
}

qint64 PreferencesStore::integer(const QString &key) const
{
    return readAs<qint64>(key, asInteger).value_or(0);
}

bool PreferencesStore::boolean(const QString &key) const
{
    return readAs<bool>(key, [](const QVariant &v) -> std::optional<bool> {
        return v.typeId() == QMetaType::Bool ? std::optional(v.toBool()) : std::nullopt;
    }).value_or(false);
}

std::optional<QByteArray> PreferencesStore::data(const QString &key) const
{
    return readAs<QByteArray>(key, asData);
}

std::optional<QByteArray> PreferencesStore::asData(const QVariant &v)
{
    if (v.typeId() != QMetaType::QByteArray)
        return std::nullopt;
    return v.toByteArray();
}

bool PreferencesStore::setString(const QString &key, const QString &value)
{
    return setValue(key, value);
}

QVariant PreferencesStore::integerArrayValue(const QList<qint64> &numbers)
{
    QVariantList elements;
    elements.reserve(numbers.size());
    for (const qint64 number : numbers)
        elements.append(QVariant::fromValue(number));
    return elements;
}

QVariant PreferencesStore::stringDictionaryValue(const QMap<QString, QString> &texts)
{
    QVariantMap entries;
    for (auto it = texts.cbegin(); it != texts.cend(); ++it)
        entries.insert(it.key(), it.value());
    return entries;
}

bool PreferencesStore::setIntegerArray(const QString &key, const QList<qint64> &value)
{
    return setValue(key, integerArrayValue(value));
}

bool PreferencesStore::setStringDictionary(const QString &key, const QMap<QString, QString> &value)
{
    return setValue(key, stringDictionaryValue(value));
}

bool PreferencesStore::setData(const QString &key, const QByteArray &value)
{
    return setValue(key, value);
}

bool PreferencesStore::setInteger(const QString &key, qint64 value)
{
    return setValue(key, QVariant::fromValue(value));
}

bool PreferencesStore::setBoolean(const QString &key, bool value)
{
    return setValue(key, value);
}
