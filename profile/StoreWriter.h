#pragma once

#include "profile/PreferencesStore.h"

#include <QFuture>
#include <QList>
#include <QObject>
#include <QString>
#include <QThreadPool>

#include <functional>
#include <memory>
#include <optional>

class SqlitePreferencesStore;

// A second connection to the store's file on a thread of its own, where values too large to
// write while the window waits are written, one at a time in the order asked. SQLite's locks
// keep its writes and those of the window's own connection apart.
class StoreWriter
{
public:
    struct Result
    {
        bool written = false;
        // What the change made of the stored value, when it made anything: kept by the caller
        // when it did not reach the disk.
        std::optional<QVariant> value;
        PreferencesStore::WriteProblem problem = PreferencesStore::WriteProblem::None;
    };
    using Done = std::function<void(const Result &)>;

    // A file that a store of this process has already opened and checked.
    explicit StoreWriter(const QString &filePath);
    // Waits for every write; their `done` is not called any more.
    ~StoreWriter();

    StoreWriter(const StoreWriter &) = delete;
    StoreWriter &operator=(const StoreWriter &) = delete;

    // PreferencesStore::update on the writer's thread; `unreadable` says the stored value must be
    // kept aside before it is replaced. `done` is called on the thread that made the writer, by
    // its event loop or by finish(), whichever comes first.
    void update(const QString &key, PreferencesStore::Change change, bool unreadable, Done done);
    // Waits for every write and calls their `done` now, in order.
    void finish();
    bool busy() const { return !m_pending.isEmpty(); }

private:
    struct Pending
    {
        QFuture<Result> result;
        Done done;
    };
    void deliverFinished();

    QString m_filePath;
    // One thread that never retires, since a connection belongs to the thread that opened it.
    QThreadPool m_thread;
    // Opened, used and closed on that thread only; closed after a failed write, so that what it
    // could not write is not tried again behind the caller's back.
    std::unique_ptr<SqlitePreferencesStore> m_store;
    QList<Pending> m_pending;
    // Where results arrive, on the thread that made the writer.
    QObject m_receiver;
};
