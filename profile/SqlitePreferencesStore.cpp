#include "profile/SqlitePreferencesStore.h"

#include "profile/DataFolder.h"
#include "profile/PreferenceEncoding.h"
#include "profile/StoreFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QUrl>
#include <QtDebug>

#include <atomic>

namespace {

std::atomic<quint64> connectionCount{0};

// SQLite's primary result codes that the store tells apart.
constexpr int sqliteError = 1;
constexpr int sqlitePermission = 3;
constexpr int sqliteReadOnly = 8;
constexpr int sqliteCorrupt = 11;
constexpr int sqliteFull = 13;
constexpr int sqliteNotADatabase = 26;

int resultCode(const QSqlError &error)
{
    bool ok = false;
    const int code = error.nativeErrorCode().toInt(&ok);
    return ok ? code & 0xff : -1;
}

// Something other than an empty or SQLite file is not opened at all.
bool isForeignFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = file.read(16);
    return !head.isEmpty() && head != QByteArrayLiteral("SQLite format 3\0");
}

} // namespace

SqlitePreferencesStore::SqlitePreferencesStore()
    : SqlitePreferencesStore(moveStoreFile(legacyPreferencesFile(), defaultFilePath()))
{
}

SqlitePreferencesStore::SqlitePreferencesStore(const QString &filePath, Access access)
    : m_connectionName(QStringLiteral("marblecove-preferences-%1").arg(connectionCount++))
    , m_filePath(filePath.isEmpty() ? QString() : QFileInfo(filePath).absoluteFilePath())
{
    openFile(access);
}

SqlitePreferencesStore::~SqlitePreferencesStore()
{
    // A write still under way is finished, so that quitting never loses it.
    m_writer.reset();
    close();
}

QString SqlitePreferencesStore::defaultFilePath()
{
    const QString folder = dataFolder();
    return folder.isEmpty() ? QString() : folder + QStringLiteral("/preferences.sqlite");
}

QString SqlitePreferencesStore::folder() const
{
    return m_filePath.isEmpty() ? QString() : QFileInfo(m_filePath).absolutePath();
}

void SqlitePreferencesStore::openFile(Access access)
{
    close();
    m_mode = Mode::Memory;
    m_lastError = 0;
    if (m_filePath.isEmpty()) {
        setProblem(WriteProblem::Blocked);
        return;
    }
    if (access == Access::Alongside) {
        if (openWritable() == Outcome::Ready) {
            m_mode = Mode::ReadWrite;
            return;
        }
        close();
        setProblem(problemOf(m_lastError));
        return;
    }
    const QFileInfo file(m_filePath);
    if (access == Access::ReadWrite && QDir().mkpath(file.absolutePath())) {
        Outcome outcome = inspect(Connection::ReadOnly);
        if (outcome == Outcome::Unavailable && m_lastError == sqliteReadOnly) {
            // The log of a writer that was killed can only be taken up by a writer.
            close();
            outcome = inspect(Connection::ReadWrite);
        }
        // Moved while still open: a writer's last checkpoint then goes into the moved files.
        if (outcome == Outcome::Unreadable)
            outcome = setAsideStore(m_filePath) ? Outcome::Ready : Outcome::Unavailable;
        close();
        if (outcome == Outcome::Ready)
            outcome = openWritable();
        if (outcome == Outcome::Ready) {
            m_mode = Mode::ReadWrite;
            if (m_unsaved.isEmpty())
                setProblem(WriteProblem::None);
            return;
        }
        close();
    }
    // A store that cannot be written still shows the child's progress and drawings. Where not
    // even the log's index can be made (a read-only folder or mount, a full disk), the file is
    // read as it stands.
    const int writeError = m_lastError;
    if (QFileInfo(m_filePath).isFile()) {
        Outcome outcome = inspect(Connection::ReadOnly);
        if (outcome == Outcome::Unavailable) {
            close();
            outcome = inspect(Connection::Immutable);
        }
        if (outcome == Outcome::Ready && prepare())
            m_mode = Mode::ReadOnly;
        else
            close();
    }
    m_lastError = writeError;
    if (m_mode == Mode::Memory)
        qWarning("Preferences: %s cannot be used; changes are kept for this run only (SQLite result %d)", qPrintable(m_filePath), m_lastError);
    setProblem(access == Access::ReadOnly ? WriteProblem::ReadOnly : problemOf(m_lastError));
}

// Opens the file and checks that it is a store of ours: nothing but the preferences table,
// every row of which can be walked. Read-only, it changes nothing in the file or beside it.
SqlitePreferencesStore::Outcome SqlitePreferencesStore::inspect(Connection how)
{
    const QFileInfo file(m_filePath);
    if (!file.exists() || file.size() == 0)
        return Outcome::Ready;
    if (isForeignFile(m_filePath))
        return Outcome::Unreadable;
    const Outcome opened = connect(how);
    if (opened != Outcome::Ready)
        return opened;
    const auto failure = [this](const QSqlQuery &query) {
        m_lastError = resultCode(query.lastError());
        return m_lastError == sqliteCorrupt || m_lastError == sqliteNotADatabase || m_lastError == sqliteError
            ? Outcome::Unreadable
            : Outcome::Unavailable;
    };
    QSqlQuery query(m_db);
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("SELECT type, name FROM sqlite_schema")))
        return failure(query);
    bool hasTable = false;
    while (query.next()) {
        const QString name = query.value(1).toString();
        if (name == QLatin1String("preferences"))
            hasTable = true;
        else if (name != QLatin1String("sqlite_autoindex_preferences_1"))
            return Outcome::Unreadable;
    }
    if (query.lastError().isValid())
        return failure(query);
    if (!hasTable)
        return Outcome::Ready;
    // Another shape of table fails here; so does damage in the table itself.
    if (!query.exec(QStringLiteral("SELECT key, kind, typeof(value) FROM preferences")))
        return failure(query);
    while (query.next()) {
    }
    if (query.lastError().isValid())
        return failure(query);
    return Outcome::Ready;
}

SqlitePreferencesStore::Outcome SqlitePreferencesStore::openWritable()
{
    const Outcome opened = connect(Connection::ReadWrite);
    if (opened != Outcome::Ready)
        return opened;
    QSqlQuery setup(m_db);
    // WAL with a full sync: each commit is one append to the log and one sync of it, whatever
    // else the file holds. The empty delete finds a file, folder or disk that refuses writes,
    // which SQLite would otherwise open read-only without a word.
    for (const char *statement :
         {"PRAGMA journal_mode=WAL", "PRAGMA synchronous=FULL", "PRAGMA journal_size_limit=1048576",
          "CREATE TABLE IF NOT EXISTS preferences (key TEXT PRIMARY KEY NOT NULL, kind TEXT NOT NULL, value)",
          "BEGIN IMMEDIATE", "DELETE FROM preferences WHERE 0", "COMMIT"}) {
        if (!setup.exec(QString::fromLatin1(statement))) {
            m_lastError = resultCode(setup.lastError());
            return Outcome::Unavailable;
        }
    }
    setup.finish();
    return prepare() ? Outcome::Ready : Outcome::Unavailable;
}

SqlitePreferencesStore::Outcome SqlitePreferencesStore::connect(Connection how)
{
    m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
    m_db.setDatabaseName(m_filePath);
    if (how == Connection::ReadOnly)
        m_db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
    if (how == Connection::Immutable) {
        m_db.setDatabaseName(QUrl::fromLocalFile(m_filePath).toString(QUrl::FullyEncoded) + QStringLiteral("?immutable=1"));
        m_db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_OPEN_URI"));
    }
    if (m_db.open())
        return Outcome::Ready;
    m_lastError = resultCode(m_db.lastError());
    return Outcome::Unavailable;
}

bool SqlitePreferencesStore::prepare()
{
    m_select = std::make_unique<QSqlQuery>(m_db);
    m_upsert = std::make_unique<QSqlQuery>(m_db);
    m_delete = std::make_unique<QSqlQuery>(m_db);
    m_version = std::make_unique<QSqlQuery>(m_db);
    m_select->setForwardOnly(true);
    m_version->setForwardOnly(true);
    return m_select->prepare(QStringLiteral("SELECT kind, value FROM preferences WHERE key = ?"))
        && m_upsert->prepare(QStringLiteral("INSERT INTO preferences (key, kind, value) VALUES (?, ?, ?) "
                                            "ON CONFLICT (key) DO UPDATE SET kind = excluded.kind, "
                                            "value = excluded.value"))
        && m_delete->prepare(QStringLiteral("DELETE FROM preferences WHERE key = ?"))
        && m_version->prepare(QStringLiteral("PRAGMA data_version"));
}

void SqlitePreferencesStore::close()
{
    m_select.reset();
    m_upsert.reset();
    m_delete.reset();
    m_version.reset();
    m_known.clear();
    m_db.close();
    m_db = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_connectionName);
}

QVariant SqlitePreferencesStore::value(const QString &key) const
{
    if (const auto unsaved = m_unsaved.constFind(key); unsaved != m_unsaved.cend())
        return unsaved->value_or(QVariant());
    if (!m_select)
        return {};
    // Taken before the read: a write by another process in between then only looks newer.
    const std::optional<qint64> version = dataVersion();
    m_select->bindValue(0, key);
    QVariant decoded;
    if (m_select->exec() && m_select->next()) {
        decoded = decodePreference(m_select->value(0).toString(), m_select->value(1));
        if (!decoded.isValid())
            m_unreadable.insert(key);
    }
    // An unfinished read would hold its snapshot and keep the log from being folded back.
    m_select->finish();
    remember(key, decoded, version);
    return decoded;
}

void SqlitePreferencesStore::noteUnreadable(const QString &key) const
{
    m_unreadable.insert(key);
}

bool SqlitePreferencesStore::setValue(const QString &key, const QVariant &value)
{
    if (!encodePreference(value))
        return false;
    if (writeRow(key, value)) {
        m_unsaved.remove(key);
        if (m_unsaved.isEmpty())
            setProblem(WriteProblem::None);
        return true;
    }
    m_unsaved.insert(key, value);
    noteFailedWrite();
    return false;
}

bool SqlitePreferencesStore::update(const QString &key, const Change &change)
{
    if (m_mode != Mode::ReadWrite) {
        // Kept for this run and tried again like any other write.
        if (const std::optional<QVariant> changed = change(value(key)))
            setValue(key, *changed);
        return false;
    }
    QSqlQuery control(m_db);
    // IMMEDIATE takes the write lock before the read, so another process's update waits for
    // this one to commit and then reads what it wrote.
    if (!control.exec(QStringLiteral("BEGIN IMMEDIATE"))) {
        qWarning("Preferences: updating %s failed: %s", qPrintable(key), qPrintable(control.lastError().text()));
        return false;
    }
    // Unless another process has written since, the value is the one last read or written
    // here, and a large one need not be read back.
    const std::optional<qint64> version = dataVersion();
    const bool known = version && *version == m_knownVersion && m_known.contains(key);
    const QVariant stored = known ? m_known.value(key) : value(key);
    const std::optional<QVariant> changed = change(stored);
    if (changed && !setValue(key, *changed)) {
        control.exec(QStringLiteral("ROLLBACK"));
        return false;
    }
    if (!control.exec(QStringLiteral("COMMIT"))) {
        qWarning("Preferences: updating %s failed: %s", qPrintable(key), qPrintable(control.lastError().text()));
        m_lastError = resultCode(control.lastError());
        control.exec(QStringLiteral("ROLLBACK"));
        if (changed) {
            m_unsaved.insert(key, *changed);
            noteFailedWrite();
        }
        return false;
    }
    remember(key, changed.value_or(stored), version);
    return true;
}

void SqlitePreferencesStore::updateInBackground(const QString &key, Change change, Done done)
{
    // A store that cannot write, or still owes this key an earlier write, writes it here as ever.
    if (m_mode != Mode::ReadWrite || m_filePath.isEmpty() || m_unsaved.contains(key)) {
        done(update(key, change));
        return;
    }
    if (!m_writer)
        m_writer = std::make_unique<StoreWriter>(m_filePath);
    m_writer->update(key, std::move(change), m_unreadable.contains(key),
                     [this, key, done = std::move(done)](const StoreWriter::Result &result) {
                         if (result.written) {
                             m_unreadable.remove(key);
                         } else if (result.value) {
                             // Kept for this run and tried again like any other write.
                             m_unsaved.insert(key, *result.value);
                             if (m_mode == Mode::ReadWrite)
                                 setProblem(result.problem != WriteProblem::None ? result.problem : problemOf(0));
                         }
                         done(result.written);
                     });
}

void SqlitePreferencesStore::finishBackgroundUpdates()
{
    if (m_writer)
        m_writer->finish();
}

std::optional<qint64> SqlitePreferencesStore::dataVersion() const
{
    std::optional<qint64> version;
    if (m_version && m_version->exec() && m_version->next())
        version = m_version->value(0).toLongLong();
    if (m_version)
        m_version->finish();
    return version;
}

void SqlitePreferencesStore::remember(const QString &key, const QVariant &value, std::optional<qint64> version) const
{
    if (!version)
        return;
    if (*version != m_knownVersion) {
        m_known.clear();
        m_knownVersion = *version;
    }
    m_known.insert(key, value);
}

bool SqlitePreferencesStore::keepUnreadable(const QString &key, const QByteArray &bytes)
{
    // A store in memory keeps nothing beyond this run anyway.
    return m_filePath.isEmpty() || setAsideValue(m_filePath, key, bytes);
}

bool SqlitePreferencesStore::remove(const QString &key)
{
    if (writeRow(key, std::nullopt)) {
        m_unsaved.remove(key);
        if (m_unsaved.isEmpty())
            setProblem(WriteProblem::None);
        return true;
    }
    m_unsaved.insert(key, std::nullopt);
    noteFailedWrite();
    return false;
}

bool SqlitePreferencesStore::writeRow(const QString &key, const std::optional<QVariant> &value)
{
    if (m_mode != Mode::ReadWrite)
        return false;
    m_lastError = 0;
    if (m_unreadable.contains(key) && !keepStoredBytes(key))
        return false;
    QSqlQuery &query = value ? *m_upsert : *m_delete;
    query.bindValue(0, key);
    if (value) {
        const std::optional<EncodedPreference> encoded = encodePreference(*value);
        query.bindValue(1, encoded->kind);
        query.bindValue(2, encoded->column);
    }
    const bool written = query.exec();
    m_known.remove(key);
    if (!written) {
        m_lastError = resultCode(query.lastError());
        qWarning("Preferences: writing %s failed: %s", qPrintable(key), qPrintable(query.lastError().text()));
    }
    query.finish();
    // Do not keep a large value alive through the bound parameter.
    if (value)
        query.bindValue(2, QVariant());
    return written;
}

// The exact bytes of a value nobody could read go to a file of their own before the row changes.
bool SqlitePreferencesStore::keepStoredBytes(const QString &key)
{
    QSqlQuery query(m_db);
    query.setForwardOnly(true);
    if (!query.prepare(QStringLiteral("SELECT CAST(value AS BLOB) FROM preferences WHERE key = ?")))
        return false;
    query.bindValue(0, key);
    if (!query.exec())
        return false;
    if (query.next() && !setAsideValue(m_filePath, key, query.value(0).toByteArray())) {
        m_lastError = 0;
        return false;
    }
    m_unreadable.remove(key);
    return true;
}

bool SqlitePreferencesStore::retryWrites()
{
    if (m_mode != Mode::ReadWrite)
        openFile(Access::ReadWrite);
    for (const QString &key : m_unsaved.keys()) {
        if (!writeRow(key, m_unsaved.value(key)))
            break;
        m_unsaved.remove(key);
    }
    if (m_unsaved.isEmpty() && m_mode == Mode::ReadWrite)
        setProblem(WriteProblem::None);
    else
        noteFailedWrite();
    return m_problem == WriteProblem::None;
}

// A store opened read-only or in memory keeps the reason found when it was opened.
void SqlitePreferencesStore::noteFailedWrite()
{
    if (m_mode == Mode::ReadWrite)
        setProblem(problemOf(m_lastError));
}

void SqlitePreferencesStore::setProblem(WriteProblem problem)
{
    if (m_problem == problem)
        return;
    m_problem = problem;
    notifyWriteWatcher();
}

SqlitePreferencesStore::WriteProblem SqlitePreferencesStore::problemOf(int sqliteCode) const
{
    switch (sqliteCode) {
    case sqliteReadOnly:
    case sqlitePermission:
        return WriteProblem::ReadOnly;
    case sqliteFull:
        return WriteProblem::DiskFull;
    default:
        return m_filePath.isEmpty() ? WriteProblem::Blocked : diagnoseStoreLocation(m_filePath);
    }
}

QStringList SqlitePreferencesStore::keys() const
{
    QStringList found;
    if (m_db.isOpen()) {
        QSqlQuery query(m_db);
        query.setForwardOnly(true);
        if (query.exec(QStringLiteral("SELECT key FROM preferences"))) {
            while (query.next())
                found.append(query.value(0).toString());
        }
    }
    for (auto it = m_unsaved.cbegin(); it != m_unsaved.cend(); ++it) {
        found.removeAll(it.key());
        if (it.value())
            found.append(it.key());
    }
    // SQLite orders by UTF-8 bytes; callers compare QStrings.
    found.sort();
    return found;
}
