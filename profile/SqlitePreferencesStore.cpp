#include "profile/SqlitePreferencesStore.h"

#include "profile/PreferenceEncoding.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSqlError>
#include <QStandardPaths>
#include <QtDebug>

#include <atomic>

namespace {

std::atomic<quint64> connectionCount{0};

const QString memoryDatabase = QStringLiteral(":memory:");

// SQLite's primary result codes that mean the file's content cannot be a store of ours.
constexpr int sqliteError = 1;
constexpr int sqliteCorrupt = 11;
constexpr int sqliteNotADatabase = 26;

int resultCode(const QSqlError &error)
{
    bool ok = false;
    const int code = error.nativeErrorCode().toInt(&ok);
    return ok ? code & 0xff : -1;
}

// Renames the file and any journal beside it to one new name. A journal left behind
// would be replayed into the fresh store.
// `prefix` followed by the time, and by a number when that name is taken already.
QString unusedStampedName(const QString &prefix)
{
    const QString stamped = prefix + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString name = stamped;
    for (int n = 2; QFileInfo::exists(name); ++n)
        name = stamped + QLatin1Char('-') + QString::number(n);
    return name;
}

bool setAside(const QString &path)
{
    const QString target = unusedStampedName(path + QStringLiteral(".unreadable-"));
    if (!QFile::rename(path, target))
        return false;
    for (const QLatin1String suffix : {QLatin1String("-wal"), QLatin1String("-shm"), QLatin1String("-journal")}) {
        if (QFileInfo::exists(path + suffix))
            QFile::rename(path + suffix, target + suffix);
    }
    qWarning("Preferences: %s could not be read and was set aside as %s", qPrintable(path), qPrintable(target));
    return true;
}

// Something other than an empty or SQLite file is not opened at all, so SQLite never
// touches the files beside it before they are set aside.
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
    : SqlitePreferencesStore(defaultFilePath())
{
}

SqlitePreferencesStore::SqlitePreferencesStore(const QString &filePath)
    : m_connectionName(QStringLiteral("marblecove-preferences-%1").arg(connectionCount++))
{
    if (!filePath.isEmpty()) {
        const QFileInfo file(filePath);
        if (QDir().mkpath(file.absolutePath())) {
            Outcome outcome = isForeignFile(file.absoluteFilePath()) ? Outcome::Unreadable
                                                                     : open(file.absoluteFilePath());
            if (outcome == Outcome::Unreadable) {
                close();
                if (setAside(file.absoluteFilePath()))
                    outcome = open(file.absoluteFilePath());
            }
            if (outcome == Outcome::Ready) {
                m_filePath = file.absoluteFilePath();
                return;
            }
            close();
        }
        qWarning("Preferences: %s cannot be used; nothing will be kept after this run", qPrintable(filePath));
    }
    if (open(memoryDatabase) != Outcome::Ready)
        close();
}

SqlitePreferencesStore::~SqlitePreferencesStore()
{
    close();
}

QString SqlitePreferencesStore::defaultFilePath()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    return folder.isEmpty() ? QString() : folder + QStringLiteral("/preferences.sqlite");
}

SqlitePreferencesStore::Outcome SqlitePreferencesStore::open(const QString &databaseName)
{
    m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
    m_db.setDatabaseName(databaseName);
    if (!m_db.open())
        return Outcome::Unavailable;

    const auto failure = [](const QSqlQuery &query, bool contentIsOurs) {
        const int code = resultCode(query.lastError());
        const bool unreadable = code == sqliteCorrupt || code == sqliteNotADatabase
            || (!contentIsOurs && code == sqliteError);
        return unreadable ? Outcome::Unreadable : Outcome::Unavailable;
    };

    QSqlQuery setup(m_db);
    // WAL with a full sync: each commit is one append to the log and one sync of it,
    // whatever else the file holds.
    for (const char *statement : {"PRAGMA journal_mode=WAL", "PRAGMA synchronous=FULL",
                                  "PRAGMA journal_size_limit=1048576"}) {
        if (!setup.exec(QString::fromLatin1(statement)))
            return failure(setup, true);
    }
    if (!setup.exec(QStringLiteral("CREATE TABLE IF NOT EXISTS preferences "
                                   "(key TEXT PRIMARY KEY NOT NULL, kind TEXT NOT NULL, value)")))
        return failure(setup, true);
    // A table of that name but another shape is someone else's file; walking the keys
    // finds damage in the table itself.
    if (!setup.exec(QStringLiteral("SELECT key, kind, typeof(value) FROM preferences")))
        return failure(setup, false);
    while (setup.next()) {
    }
    if (setup.lastError().isValid())
        return failure(setup, true);
    setup.finish();
    return prepare() ? Outcome::Ready : Outcome::Unavailable;
}

bool SqlitePreferencesStore::prepare()
{
    m_select = std::make_unique<QSqlQuery>(m_db);
    m_upsert = std::make_unique<QSqlQuery>(m_db);
    m_delete = std::make_unique<QSqlQuery>(m_db);
    m_select->setForwardOnly(true);
    return m_select->prepare(QStringLiteral("SELECT kind, value FROM preferences WHERE key = ?"))
        && m_upsert->prepare(QStringLiteral("INSERT INTO preferences (key, kind, value) VALUES (?, ?, ?) "
                                            "ON CONFLICT (key) DO UPDATE SET kind = excluded.kind, "
                                            "value = excluded.value"))
        && m_delete->prepare(QStringLiteral("DELETE FROM preferences WHERE key = ?"));
}

void SqlitePreferencesStore::close()
{
    m_select.reset();
    m_upsert.reset();
    m_delete.reset();
    m_db.close();
    m_db = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_connectionName);
}

QVariant SqlitePreferencesStore::value(const QString &key) const
{
    if (!m_select)
        return {};
    m_select->bindValue(0, key);
    QVariant decoded;
    if (m_select->exec() && m_select->next())
        decoded = decodePreference(m_select->value(0).toString(), m_select->value(1));
    // An unfinished read would hold its snapshot and keep the log from being folded back.
    m_select->finish();
    return decoded;
}

bool SqlitePreferencesStore::setValue(const QString &key, const QVariant &value)
{
    const std::optional<EncodedPreference> encoded = encodePreference(value);
    if (!encoded || !m_upsert)
        return false;
    m_upsert->bindValue(0, key);
    m_upsert->bindValue(1, encoded->kind);
    m_upsert->bindValue(2, encoded->column);
    const bool written = m_upsert->exec();
    if (!written)
        qWarning("Preferences: writing %s failed: %s", qPrintable(key), qPrintable(m_upsert->lastError().text()));
    m_upsert->finish();
    // Do not keep a large value alive through the bound parameter.
    m_upsert->bindValue(2, QVariant());
    return written;
}

bool SqlitePreferencesStore::update(const QString &key, const Change &change)
{
    if (!m_upsert)
        return false;
    QSqlQuery control(m_db);
    // IMMEDIATE takes the write lock before the read, so another process's update waits for
    // this one to commit and then reads what it wrote.
    if (!control.exec(QStringLiteral("BEGIN IMMEDIATE"))) {
        qWarning("Preferences: updating %s failed: %s", qPrintable(key), qPrintable(control.lastError().text()));
        return false;
    }
    const std::optional<QVariant> changed = change(value(key));
    if (changed && !setValue(key, *changed)) {
        control.exec(QStringLiteral("ROLLBACK"));
        return false;
    }
    if (!control.exec(QStringLiteral("COMMIT"))) {
        qWarning("Preferences: updating %s failed: %s", qPrintable(key), qPrintable(control.lastError().text()));
        control.exec(QStringLiteral("ROLLBACK"));
        return false;
    }
    return true;
}

bool SqlitePreferencesStore::keepUnreadable(const QString &key, const QByteArray &bytes)
{
    // A store in memory keeps nothing beyond this run anyway.
    if (m_filePath.isEmpty())
        return true;
    QSaveFile file(unusedStampedName(m_filePath + QLatin1Char('.') + key + QStringLiteral(".unreadable-")));
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit()) {
        qWarning("Preferences: the unreadable value of %s was kept as %s", qPrintable(key), qPrintable(file.fileName()));
        return true;
    }
    qWarning("Preferences: the unreadable value of %s could not be kept: %s", qPrintable(key), qPrintable(file.errorString()));
    return false;
}

bool SqlitePreferencesStore::remove(const QString &key)
{
    if (!m_delete)
        return false;
    m_delete->bindValue(0, key);
    const bool removed = m_delete->exec();
    if (!removed)
        qWarning("Preferences: removing %s failed: %s", qPrintable(key), qPrintable(m_delete->lastError().text()));
    m_delete->finish();
    return removed;
}

QStringList SqlitePreferencesStore::keys() const
{
    QStringList found;
    if (!m_db.isOpen())
        return found;
    QSqlQuery query(m_db);
    query.setForwardOnly(true);
    if (query.exec(QStringLiteral("SELECT key FROM preferences"))) {
        while (query.next())
            found.append(query.value(0).toString());
    }
    // SQLite orders by UTF-8 bytes; callers compare QStrings.
    found.sort();
    return found;
}
