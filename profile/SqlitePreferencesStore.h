#pragma once

#include "profile/PreferencesStore.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

#include <memory>

// The preferences store as an SQLite file, one row per key. Each write is its own committed,
// synced transaction, so it survives the process being killed the moment it returns, and it
// touches only its own row, so its cost does not grow with other, larger values.
//
// A file that is not a usable store is renamed beside itself (never deleted) and a fresh
// one takes its place. When no file can be used at all, values live in memory for this run.
class SqlitePreferencesStore : public PreferencesStore
{
public:
    // The file "preferences.sqlite" in the application's data folder.
    SqlitePreferencesStore();
    explicit SqlitePreferencesStore(const QString &filePath);
    ~SqlitePreferencesStore() override;

    SqlitePreferencesStore(const SqlitePreferencesStore &) = delete;
    SqlitePreferencesStore &operator=(const SqlitePreferencesStore &) = delete;

    QVariant value(const QString &key) const override;
    bool setValue(const QString &key, const QVariant &value) override;
    bool update(const QString &key, const Change &change) override;
    bool keepUnreadable(const QString &key, const QByteArray &bytes) override;
    bool remove(const QString &key) override;
    QStringList keys() const override;

    // The file in use; empty while values are only kept in memory.
    QString filePath() const { return m_filePath; }

    static QString defaultFilePath();

private:
    enum class Outcome { Ready, Unreadable, Unavailable };

    Outcome open(const QString &databaseName);
    void close();
    bool prepare();

    QString m_connectionName;
    QString m_filePath;
    QSqlDatabase m_db;
    // Prepared once: a code edit is written on every keystroke.
    std::unique_ptr<QSqlQuery> m_select;
    std::unique_ptr<QSqlQuery> m_upsert;
    std::unique_ptr<QSqlQuery> m_delete;
};
