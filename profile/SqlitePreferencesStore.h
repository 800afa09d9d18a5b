#pragma once

#include "profile/PreferencesStore.h"
#include "profile/StoreWriter.h"

#include <QHash>
#include <QMap>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

#include <memory>
#include <optional>

// The preferences store as an SQLite file, one row per key. Each write is its own committed,
// synced transaction, so it survives the process being killed the moment it returns, and it
// touches only its own row, so its cost does not grow with other, larger values.
//
// A file that is not a store of ours (damaged, or another program's database) is moved aside
// untouched (never deleted) and a fresh one takes its place. A store that exists but cannot
// be written is opened read-only, so its values still show; when no file can be used at all,
// values live in memory. Either way writes report failure and are kept to be tried again.
class SqlitePreferencesStore : public PreferencesStore
{
public:
    // How to open the file: ReadOnly opens it as it is when its folder, file or disk refuses
    // writes, for a file that can be read. Alongside is a further connection to a file another
    // store of this process has opened and checked: it is opened for writing as it stands.
    enum class Access { ReadWrite, ReadOnly, Alongside };

    // The file "preferences.sqlite" in the data folder, moved there first from where earlier
    // versions kept it.
    SqlitePreferencesStore();
    explicit SqlitePreferencesStore(const QString &filePath, Access access = Access::ReadWrite);
    ~SqlitePreferencesStore() override;

    SqlitePreferencesStore(const SqlitePreferencesStore &) = delete;
    SqlitePreferencesStore &operator=(const SqlitePreferencesStore &) = delete;

    QVariant value(const QString &key) const override;
    bool setValue(const QString &key, const QVariant &value) override;
    bool update(const QString &key, const Change &change) override;
    // Written by a connection on a thread of its own (a StoreWriter), whose changes this
    // connection sees as another process's; a key with a write still owed is written here.
    void updateInBackground(const QString &key, Change change, Done done) override;
    void finishBackgroundUpdates() override;
    bool keepUnreadable(const QString &key, const QByteArray &bytes) override;
    bool remove(const QString &key) override;
    QStringList keys() const override;

    WriteProblem writeProblem() const override { return m_problem; }
    QString folder() const override;
    bool retryWrites() override;
    void noteUnreadable(const QString &key) const override;

    // The file in use; empty while values are only kept in memory.
    QString filePath() const { return m_mode == Mode::Memory ? QString() : m_filePath; }

    static QString defaultFilePath();

private:
    enum class Outcome { Ready, Unreadable, Unavailable };
    enum class Mode { Memory, ReadOnly, ReadWrite };

    void openFile(Access access);
    // Immutable reads the file alone, for when not even its log's index can be made.
    enum class Connection { ReadWrite, ReadOnly, Immutable };
    Outcome inspect(Connection how);
    Outcome openWritable();
    Outcome connect(Connection how);
    void close();
    bool prepare();
    // SQLite's count of commits by other connections; nothing when it cannot be asked.
    std::optional<qint64> dataVersion() const;
    void remember(const QString &key, const QVariant &value, std::optional<qint64> version) const;

    // One row written or removed (no value); false and the database error kept on failure.
    bool writeRow(const QString &key, const std::optional<QVariant> &value);
    bool keepStoredBytes(const QString &key);
    void noteFailedWrite();
    void setProblem(WriteProblem problem);
    WriteProblem problemOf(int sqliteCode) const;

    QString m_connectionName;
    QString m_filePath;
    Mode m_mode = Mode::Memory;
    WriteProblem m_problem = WriteProblem::None;
    int m_lastError = 0;
    QSqlDatabase m_db;
    // Prepared once: a code edit is written on every keystroke.
    std::unique_ptr<QSqlQuery> m_select;
    std::unique_ptr<QSqlQuery> m_upsert;
    std::unique_ptr<QSqlQuery> m_delete;
    std::unique_ptr<QSqlQuery> m_version;
    // The values last read or written here, valid while m_knownVersion is the data version:
    // no other process has written since.
    mutable QHash<QString, QVariant> m_known;
    mutable qint64 m_knownVersion = -1;
    // Writes that have not reached the disk yet, newest value per key (none: a removal).
    QMap<QString, std::optional<QVariant>> m_unsaved;
    // Keys whose stored value could not be read; set aside before it is replaced.
    mutable QSet<QString> m_unreadable;
    // Made on the first write apart.
    std::unique_ptr<StoreWriter> m_writer;
};
