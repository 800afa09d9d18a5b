#include "profile/StoreWriter.h"

#include "profile/SqlitePreferencesStore.h"

#include <QPromise>

StoreWriter::StoreWriter(const QString &filePath) : m_filePath(filePath)
{
    m_thread.setMaxThreadCount(1);
    m_thread.setExpiryTimeout(-1);
}

StoreWriter::~StoreWriter()
{
    m_pending.clear();
    m_thread.start([this] { m_store.reset(); });
    m_thread.waitForDone();
}

void StoreWriter::update(const QString &key, PreferencesStore::Change change, bool unreadable, Done done)
{
    // A promise rather than QtConcurrent::run: waiting for that would run a write not yet started
    // on the waiting thread, away from the connection's own.
    auto promise = std::make_shared<QPromise<Result>>();
    QFuture<Result> result = promise->future();
    promise->start();
    m_thread.start([this, promise, key, change = std::move(change), unreadable] {
        if (!m_store)
            m_store = std::make_unique<SqlitePreferencesStore>(m_filePath, SqlitePreferencesStore::Access::Alongside);
        if (unreadable)
            m_store->noteUnreadable(key);
        Result outcome;
        outcome.written = m_store->update(key, [&](const QVariant &stored) {
            outcome.value = change(stored);
            return outcome.value;
        });
        outcome.problem = m_store->writeProblem();
        if (!outcome.written)
            m_store.reset();
        promise->addResult(std::move(outcome));
        promise->finish();
    });
    m_pending.append({result, std::move(done)});
    result.then(&m_receiver, [this](const Result &) { deliverFinished(); });
}

void StoreWriter::finish()
{
    for (Pending &pending : m_pending)
        pending.result.waitForFinished();
    deliverFinished();
}

void StoreWriter::deliverFinished()
{
    // A `done` may ask for the next write, which joins the end of the list.
    while (!m_pending.isEmpty() && m_pending.first().result.isFinished()) {
        const Pending pending = m_pending.takeFirst();
        pending.done(pending.result.result());
    }
}
