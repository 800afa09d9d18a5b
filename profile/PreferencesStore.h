#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <optional>

// The user's durable key-value store for saved state. Every value keeps the type it was
// written with; a typed read of a value of another type behaves as if the key were absent,
// so bad stored state falls back to defaults instead of being misread.
//
// A value is a string, an integer, a real, a boolean, binary data, or an array or a
// dictionary (string keys) of such values. A write that returns true is durable; one that
// returns false is kept for this run (reads see it) and tried again by retryWrites().
//
// A value that is present but cannot be read (malformed, or of another type than its reader
// expects) is kept aside, byte for byte, before any write replaces or removes it.
class PreferencesStore
{
public:
    // Why writes do not reach the disk.
    enum class WriteProblem { None, ReadOnly, DiskFull, Blocked, Failed };

    virtual ~PreferencesStore();

    // None while every write has reached the disk.
    virtual WriteProblem writeProblem() const { return WriteProblem::None; }
    // The folder the store lives in, for a grown-up who has to fix it.
    virtual QString folder() const { return {}; }
    // Writes again what could not be written; true once everything is on disk.
    virtual bool retryWrites() { return true; }
    // Called whenever writeProblem() changes; one watcher, known by its owner.
    void setWriteWatcher(const void *owner, std::function<void()> watcher);
    void clearWriteWatcher(const void *owner);

    // Tells the store that the value under `key` could not be used by its reader, so that it
    // is kept aside before anything replaces it.
    virtual void noteUnreadable(const QString &key) const { Q_UNUSED(key) }

    // Typed reads: absent or of another type gives std::nullopt, 0 or false.
    // An array counts as integers only if every element is one; a dictionary counts as
    // strings only if every value is one.
    std::optional<QList<qint64>> integerArray(const QString &key) const;
    std::optional<QMap<QString, QString>> stringDictionary(const QString &key) const;
    std::optional<QString> string(const QString &key) const;
    qint64 integer(const QString &key) const;
    bool boolean(const QString &key) const;
    std::optional<QByteArray> data(const QString &key) const;

    // The same readings of a value already in hand.
    static std::optional<QList<qint64>> asIntegerArray(const QVariant &value);
    static std::optional<QMap<QString, QString>> asStringDictionary(const QVariant &value);
    static std::optional<QByteArray> asData(const QVariant &value);
    // The values the typed writes store.
    static QVariant integerArrayValue(const QList<qint64> &numbers);
    static QVariant stringDictionaryValue(const QMap<QString, QString> &texts);

    // Typed writes replace whatever the key held. False when the write could not be made.
    bool setString(const QString &key, const QString &value);
    bool setIntegerArray(const QString &key, const QList<qint64> &value);
    bool setStringDictionary(const QString &key, const QMap<QString, QString> &value);
    bool setData(const QString &key, const QByteArray &value);
    bool setInteger(const QString &key, qint64 value);
    bool setBoolean(const QString &key, bool value);

    // The stored value with its own type (QString, qint64, double, bool, QByteArray,
    // QVariantList, QVariantMap), or an invalid QVariant when absent or unreadable.
    virtual QVariant value(const QString &key) const = 0;

    // Writes any value of the kinds above, also one of a type its reader does not expect
    // (how a wrongly typed value is stored on purpose). False, and nothing written, when
    // the value or one of its elements is of no such kind, or the write failed.
    virtual bool setValue(const QString &key, const QVariant &value) = 0;

    // Reads the value under `key` and writes what `change` makes of it in one transaction, so
    // that no other process's write comes between the read and the write and is lost. `change`
    // gets the stored value (invalid when absent or unreadable) and returns the value to write,
    // or nothing to leave the key as it is; it must not use the store itself. False when the
    // write did not reach the disk; the value is then kept for this run, as with setValue.
    using Change = std::function<std::optional<QVariant>(const QVariant &stored)>;
    virtual bool update(const QString &key, const Change &change) = 0;

    // update() made on a thread of the store's own, so that writing a large value does not hold
    // up the caller: `change` runs there (it may call keepUnreadable), and `done` gets update()'s
    // result on the caller's thread once the write is durable or has failed. Such writes are made
    // one after another. Here, and wherever a store cannot write apart, it is update() at once.
    using Done = std::function<void(bool written)>;
    virtual void updateInBackground(const QString &key, Change change, Done done) { done(update(key, change)); }
    // Waits for every write asked of updateInBackground and calls its `done` now.
    virtual void finishBackgroundUpdates() {}

    // Keeps the bytes of a value that cannot be used (unreadable, or too big to open) in a file
    // beside the store named after the key and the time, before it is replaced or removed.
    // False when they could not be kept.
    virtual bool keepUnreadable(const QString &key, const QByteArray &bytes) = 0;

    // Removing an absent key succeeds.
    virtual bool remove(const QString &key) = 0;

    // Every key the store holds, in ascending order.
    virtual QStringList keys() const = 0;

protected:
    void notifyWriteWatcher() const;

private:
    // The value under `key` as `read` makes it out; a present value it cannot make out is
    // noted as unreadable and reads as absent.
    template<typename T, typename Read>
    std::optional<T> readAs(const QString &key, Read read) const
    {
        const QVariant v = value(key);
        if (!v.isValid())
            return std::nullopt;
        std::optional<T> result = read(v);
        if (!result)
            noteUnreadable(key);
        return result;
    }

private:
    const void *m_watcherOwner = nullptr;
    std::function<void()> m_watcher;
};
