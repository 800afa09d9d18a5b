#include "profile/SqlitePreferencesStore.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QPointF>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

namespace {

enum class Kind { String, Integer, Boolean, IntegerArray, StringDictionary, Data, None };

const QList<Kind> readableKinds = {Kind::String, Kind::Integer, Kind::Boolean,
                                   Kind::IntegerArray, Kind::StringDictionary, Kind::Data};

template <typename T>
QVariant present(const std::optional<T> &value)
{
    return value ? QVariant::fromValue(*value) : QVariant();
}

// The typed read of `kind`, with "absent" as an invalid QVariant.
QVariant read(const PreferencesStore &store, Kind kind, const QString &key)
{
    switch (kind) {
    case Kind::String: return present(store.string(key));
    case Kind::Integer: return QVariant::fromValue(store.integer(key));
    case Kind::Boolean: return store.boolean(key);
    case Kind::IntegerArray: return present(store.integerArray(key));
    case Kind::StringDictionary: return present(store.stringDictionary(key));
    case Kind::Data: return present(store.data(key));
    case Kind::None: break;
    }
    return {};
}

QVariant absentAs(Kind kind)
{
    switch (kind) {
    case Kind::Integer: return QVariant::fromValue(qint64(0));
    case Kind::Boolean: return false;
    default: return {};
    }
}

bool write(PreferencesStore &store, Kind kind, const QString &key, const QVariant &value)
{
    switch (kind) {
    case Kind::String: return store.setString(key, value.toString());
    case Kind::Integer: return store.setInteger(key, value.value<qint64>());
    case Kind::Boolean: return store.setBoolean(key, value.toBool());
    case Kind::IntegerArray: return store.setIntegerArray(key, value.value<QList<qint64>>());
    case Kind::StringDictionary: return store.setStringDictionary(key, value.value<QMap<QString, QString>>());
    case Kind::Data: return store.setData(key, value.toByteArray());
    case Kind::None: break;
    }
    return false;
}

// The store files set aside beside storePath, without their journals.
QStringList setAsideFiles(const QString &storePath)
{
    const QFileInfo file(storePath);
    const QRegularExpression name(QStringLiteral("^%1\\.unreadable-\\d{8}-\\d{6}(-\\d+)?$")
                                      .arg(QRegularExpression::escape(file.fileName())));
    return file.dir().entryList(QDir::Files).filter(name);
}

QByteArray randomBytes(int size, quint32 seed)
{
    QRandomGenerator random(seed);
    QByteArray bytes(size, Qt::Uninitialized);
    for (char &byte : bytes)
        byte = char(random.bounded(256));
    return bytes;
}

QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// A store file whose first page has been overwritten past the file header.
QByteArray damagedDatabase(const QString &folder)
{
    const QString path = folder + QStringLiteral("/damaged.sqlite");
    {
        SqlitePreferencesStore store(path);
        store.setString(QStringLiteral("playerName"), QStringLiteral("Ada"));
    }
    QByteArray bytes = fileBytes(path);
    const QByteArray noise = randomBytes(bytes.size() - 100, 7);
    bytes.replace(100, noise.size(), noise);
    return bytes;
}

// A database with a "preferences" table that is not laid out as a store.
QByteArray otherDatabase(const QString &folder)
{
    const QString path = folder + QStringLiteral("/other.sqlite");
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("other"));
        db.setDatabaseName(path);
        db.open();
        QSqlQuery(db).exec(QStringLiteral("CREATE TABLE preferences (name TEXT, score REAL)"));
        QSqlQuery(db).exec(QStringLiteral("INSERT INTO preferences VALUES ('x', 1.5)"));
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("other"));
    return fileBytes(path);
}

qint64 lastReported(const QByteArray &output)
{
    const qsizetype end = output.lastIndexOf('\n');
    if (end < 0)
        return 0;
    const qsizetype start = output.lastIndexOf('\n', end - 1) + 1;
    return output.mid(start, end - start).toLongLong();
}

} // namespace

Q_DECLARE_METATYPE(Kind)

class TestStore : public QObject
{
    Q_OBJECT

private slots:
    void roundTrip_data();
    void roundTrip();
    void typeKept_data();
    void typeKept();
    void refusesValuesItCannotKeep();
    void laterWriteReplacesType();
    void removeAndListKeys();
    void largeValueRoundTrip();
    void storesKeepApart();
    void createsMissingFile();
    void defaultLocation();
    void setsAsideUnreadableFile_data();
    void setsAsideUnreadableFile();
    void emptyFileIsFreshStore();
    void unusableLocation_data();
    void unusableLocation();
    void keepsEveryReportedWriteAcrossKill();

private:
    QTemporaryDir m_dir;
    int m_files = 0;
    QString freshPath() { return m_dir.filePath(QStringLiteral("store%1/preferences.sqlite").arg(++m_files)); }
};

void TestStore::roundTrip_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("string") << Kind::String << QVariant(QStringLiteral("repeat 4 [fd 100 rt 90]\n; square"));
    QTest::newRow("empty string") << Kind::String << QVariant(QString(""));
    QTest::newRow("unicode string") << Kind::String << QVariant(QStringLiteral("Pêche 🐢 \u2018hi\u2019\u2026"));
    QTest::newRow("integer") << Kind::Integer << QVariant::fromValue(qint64(3));
    QTest::newRow("negative integer") << Kind::Integer << QVariant::fromValue(qint64(-2));
    QTest::newRow("large integer") << Kind::Integer << QVariant::fromValue(qint64(1) << 62);
    QTest::newRow("true") << Kind::Boolean << QVariant(true);
    QTest::newRow("false") << Kind::Boolean << QVariant(false);
    QTest::newRow("integer array") << Kind::IntegerArray << QVariant::fromValue(QList<qint64>{0, 3, 29});
    QTest::newRow("empty integer array") << Kind::IntegerArray << QVariant::fromValue(QList<qint64>{});
    QTest::newRow("string dictionary")
        << Kind::StringDictionary
        << QVariant::fromValue(QMap<QString, QString>{{"0", "Clover"}, {"3", "Her Majesty"}});
    QTest::newRow("empty dictionary") << Kind::StringDictionary << QVariant::fromValue(QMap<QString, QString>{});
    QTest::newRow("data") << Kind::Data << QVariant(QByteArray("[{\"title\":\"x\"}]\0\xff", 17));
    QTest::newRow("empty data") << Kind::Data << QVariant(QByteArray(""));
}

void TestStore::roundTrip()
{
    QFETCH(Kind, kind);
    QFETCH(QVariant, value);
    const QString path = freshPath();
    {
        SqlitePreferencesStore store(path);
        QCOMPARE(store.filePath(), path);
        QVERIFY(write(store, kind, QStringLiteral("key"), value));
        QCOMPARE(read(store, kind, QStringLiteral("key")), value);
    }
    const SqlitePreferencesStore reopened(path);
    QCOMPARE(reopened.keys(), QStringList{QStringLiteral("key")});
    QCOMPARE(read(reopened, kind, QStringLiteral("key")), value);
}

void TestStore::typeKept_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<Kind>("readableAs");

    const auto list = [](std::initializer_list<QVariant> elements) { return QVariant(QVariantList(elements)); };
    QTest::newRow("text of a number") << QVariant(QStringLiteral("7")) << Kind::String;
    QTest::newRow("integer") << QVariant(7) << Kind::Integer;
    QTest::newRow("boolean") << QVariant(true) << Kind::Boolean;
    QTest::newRow("real") << QVariant(7.0) << Kind::None;
    QTest::newRow("data") << QVariant(QByteArray("7")) << Kind::Data;
    QTest::newRow("array of integers") << list({1, 2}) << Kind::IntegerArray;
    QTest::newRow("array with a text element") << list({1, QStringLiteral("2")}) << Kind::None;
    QTest::newRow("array with a boolean element") << list({1, true}) << Kind::None;
    QTest::newRow("array with a real element") << list({1, 2.5}) << Kind::None;
    QTest::newRow("array of texts") << list({QStringLiteral("1")}) << Kind::None;
    QTest::newRow("dictionary of texts")
        << QVariant(QVariantMap{{"0", QStringLiteral("Clover")}}) << Kind::StringDictionary;
    QTest::newRow("dictionary with a number value")
        << QVariant(QVariantMap{{"0", QStringLiteral("Clover")}, {"1", 5}}) << Kind::None;
    QTest::newRow("dictionary with an array value")
        << QVariant(QVariantMap{{"0", list({QStringLiteral("Clover")})}}) << Kind::None;
}

void TestStore::typeKept()
{
    QFETCH(QVariant, stored);
    QFETCH(Kind, readableAs);
    const QString path = freshPath();
    {
        SqlitePreferencesStore store(path);
        QVERIFY(store.setValue(QStringLiteral("key"), stored));
    }
    SqlitePreferencesStore reopened(path);
    QCOMPARE(reopened.value(QStringLiteral("key")), stored);
    for (const Kind kind : readableKinds) {
        const QVariant got = read(reopened, kind, QStringLiteral("key"));
        if (kind != readableAs) {
            QCOMPARE(got, absentAs(kind));
            continue;
        }
        // Through the typed read, the value compares equal to what was written.
        QVERIFY2(got.isValid(), "the matching typed read found nothing");
        QVERIFY(write(reopened, kind, QStringLiteral("copy"), got));
        QCOMPARE(reopened.value(QStringLiteral("copy")), reopened.value(QStringLiteral("key")));
    }
}

void TestStore::refusesValuesItCannotKeep()
{
    SqlitePreferencesStore store(freshPath());
    QVERIFY(store.setString(QStringLiteral("code0"), QStringLiteral("fd 10")));
    QVERIFY(!store.setValue(QStringLiteral("code0"), QPointF(1, 2)));
    QVERIFY(!store.setValue(QStringLiteral("code0"), QVariantList{1, QPointF(1, 2)}));
    QVERIFY(!store.setValue(QStringLiteral("code0"), QVariantMap{{"a", QPointF(1, 2)}}));
    QVERIFY(!store.setValue(QStringLiteral("code0"), std::nan("")));
    QVERIFY(!store.setValue(QStringLiteral("code0"), QVariant()));
    QCOMPARE(store.string(QStringLiteral("code0")), QStringLiteral("fd 10"));
    QVERIFY(!store.setValue(QStringLiteral("other"), QPointF(1, 2)));
    QCOMPARE(store.keys(), QStringList{QStringLiteral("code0")});
}

void TestStore::laterWriteReplacesType()
{
    SqlitePreferencesStore store(freshPath());
    QVERIFY(store.setString(QStringLiteral("turtle"), QStringLiteral("3")));
    QVERIFY(store.setInteger(QStringLiteral("turtle"), 2));
    QCOMPARE(store.string(QStringLiteral("turtle")), std::nullopt);
    QCOMPARE(store.integer(QStringLiteral("turtle")), 2);
    QVERIFY(store.setBoolean(QStringLiteral("turtle"), true));
    QCOMPARE(store.integer(QStringLiteral("turtle")), 0);
    QVERIFY(store.boolean(QStringLiteral("turtle")));
}

void TestStore::removeAndListKeys()
{
    const QString path = freshPath();
    {
        SqlitePreferencesStore store(path);
        QVERIFY(store.keys().isEmpty());
        QVERIFY(store.setString(QStringLiteral("code12"), QStringLiteral("fd 1")));
        QVERIFY(store.setString(QStringLiteral("code0"), QStringLiteral("fd 2")));
        QVERIFY(store.setIntegerArray(QStringLiteral("completed"), {0, 1}));
        QVERIFY(store.setInteger(QStringLiteral("turtle"), 0));
        QCOMPARE(store.keys(), (QStringList{"code0", "code12", "completed", "turtle"}));
        QVERIFY(store.remove(QStringLiteral("code0")));
        QVERIFY(store.remove(QStringLiteral("never written")));
        QCOMPARE(store.string(QStringLiteral("code0")), std::nullopt);
    }
    SqlitePreferencesStore reopened(path);
    QCOMPARE(reopened.keys(), (QStringList{"code12", "completed", "turtle"}));
    QCOMPARE(reopened.string(QStringLiteral("code12")), QStringLiteral("fd 1"));
    QVERIFY(!reopened.value(QStringLiteral("code0")).isValid());
    for (const QString &key : reopened.keys())
        QVERIFY(reopened.remove(key));
    QVERIFY(reopened.keys().isEmpty());
}

void TestStore::largeValueRoundTrip()
{
    const QString path = freshPath();
    const QByteArray creations = randomBytes(20 * 1024 * 1024, 11);
    {
        SqlitePreferencesStore store(path);
        QVERIFY(store.setString(QStringLiteral("code0"), QStringLiteral("fd 1")));
        QVERIFY(store.setData(QStringLiteral("creations"), creations));
        QVERIFY(store.setString(QStringLiteral("code0"), QStringLiteral("fd 2")));
    }
    SqlitePreferencesStore reopened(path);
    QVERIFY(reopened.data(QStringLiteral("creations")) == creations);
    QCOMPARE(reopened.string(QStringLiteral("code0")), QStringLiteral("fd 2"));
    QVERIFY(reopened.setData(QStringLiteral("creations"), QByteArray("[]")));
    QCOMPARE(reopened.data(QStringLiteral("creations")), QByteArray("[]"));
}

void TestStore::storesKeepApart()
{
    SqlitePreferencesStore first(freshPath());
    SqlitePreferencesStore second(freshPath());
    QVERIFY(first.setInteger(QStringLiteral("theme"), 1));
    QVERIFY(second.setInteger(QStringLiteral("theme"), 2));
    QCOMPARE(first.integer(QStringLiteral("theme")), 1);
    QCOMPARE(second.integer(QStringLiteral("theme")), 2);
    QVERIFY(first.filePath() != second.filePath());
}

void TestStore::createsMissingFile()
{
    const QString path = m_dir.filePath(QStringLiteral("missing/a/b/preferences.sqlite"));
    QVERIFY(!QFileInfo::exists(path));
    {
        SqlitePreferencesStore store(path);
        QCOMPARE(store.filePath(), path);
        QVERIFY(QFileInfo(path).isFile());
        QVERIFY(store.setBoolean(QStringLiteral("hasCompletedWelcome"), true));
    }
    QVERIFY(SqlitePreferencesStore(path).boolean(QStringLiteral("hasCompletedWelcome")));
}

void TestStore::defaultLocation()
{
    QStandardPaths::setTestModeEnabled(true);
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QVERIFY(!folder.isEmpty());
    QCOMPARE(SqlitePreferencesStore::defaultFilePath(), folder + QStringLiteral("/preferences.sqlite"));
    {
        SqlitePreferencesStore store;
        QCOMPARE(store.filePath(), SqlitePreferencesStore::defaultFilePath());
        QVERIFY(store.setInteger(QStringLiteral("theme"), 4));
    }
    QCOMPARE(SqlitePreferencesStore().integer(QStringLiteral("theme")), 4);
    QVERIFY(QDir(folder).removeRecursively());
    QStandardPaths::setTestModeEnabled(false);
}

void TestStore::setsAsideUnreadableFile_data()
{
    QTest::addColumn<QByteArray>("content");
    // SQLite itself may empty a stale log beside a file with its header; others are never opened.
    QTest::addColumn<bool>("logKept");

    QTest::newRow("random bytes") << randomBytes(8192, 1) << true;
    QTest::newRow("text file") << QByteArray("completed = 1, 2, 3\nturtle = 2\n") << true;
    QTest::newRow("damaged database") << damagedDatabase(m_dir.path()) << false;
    QTest::newRow("database of another shape") << otherDatabase(m_dir.path()) << false;
}

void TestStore::setsAsideUnreadableFile()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, logKept);
    const QString path = freshPath();
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QVERIFY(writeFile(path, content));
    QVERIFY(writeFile(path + QStringLiteral("-wal"), QByteArray("stale log")));
    {
        SqlitePreferencesStore store(path);
        QCOMPARE(store.filePath(), path);
        QVERIFY(store.keys().isEmpty());
        QVERIFY(store.setString(QStringLiteral("playerName"), QStringLiteral("Ada")));
    }
    const QStringList aside = setAsideFiles(path);
    QCOMPARE(aside.size(), 1);
    const QString asidePath = QFileInfo(path).dir().filePath(aside.first());
    QCOMPARE(fileBytes(asidePath), content);
    if (logKept)
        QCOMPARE(fileBytes(asidePath + QStringLiteral("-wal")), QByteArray("stale log"));
    QVERIFY(!fileBytes(path + QStringLiteral("-wal")).contains("stale log"));

    SqlitePreferencesStore reopened(path);
    QCOMPARE(reopened.string(QStringLiteral("playerName")), QStringLiteral("Ada"));
    QCOMPARE(setAsideFiles(path), aside);
}

void TestStore::emptyFileIsFreshStore()
{
    const QString path = freshPath();
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QVERIFY(writeFile(path, QByteArray()));
    {
        SqlitePreferencesStore store(path);
        QCOMPARE(store.filePath(), path);
        QVERIFY(store.setInteger(QStringLiteral("turtle"), 1));
    }
    QCOMPARE(SqlitePreferencesStore(path).integer(QStringLiteral("turtle")), 1);
    QVERIFY(setAsideFiles(path).isEmpty());
}

void TestStore::unusableLocation_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("asRoot");

    const QString blocker = m_dir.filePath(QStringLiteral("blocker"));
    writeFile(blocker, QByteArray("not a folder"));
    QTest::newRow("folder is a file") << blocker + QStringLiteral("/preferences.sqlite") << true;
    QTest::newRow("folder in /proc") << QStringLiteral("/proc/marblecove-test/preferences.sqlite") << true;
    const QString folder = m_dir.filePath(QStringLiteral("a-folder"));
    QDir().mkpath(folder);
    QTest::newRow("path is a folder") << folder << true;
    const QString locked = m_dir.filePath(QStringLiteral("locked"));
    QDir().mkpath(locked);
    QFile::setPermissions(locked, QFile::ReadOwner | QFile::ExeOwner);
    QTest::newRow("read-only folder") << locked + QStringLiteral("/preferences.sqlite") << false;
}

void TestStore::unusableLocation()
{
    QFETCH(QString, path);
    QFETCH(bool, asRoot);
    const QString probe = QFileInfo(path).path() + QStringLiteral("/probe");
    if (!asRoot && writeFile(probe, "x")) {
        QFile::remove(probe);
        QSKIP("this user can write to read-only folders");
    }
    SqlitePreferencesStore store(path);
    QVERIFY(store.filePath().isEmpty());
    QVERIFY(store.keys().isEmpty());
    QCOMPARE(store.integer(QStringLiteral("turtle")), 0);
    // The run goes on with the values in memory.
    QVERIFY(store.setInteger(QStringLiteral("turtle"), 2));
    QCOMPARE(store.integer(QStringLiteral("turtle")), 2);
    QVERIFY(!QFileInfo(path).isFile());
    QVERIFY(setAsideFiles(path).isEmpty());
}

// A writer reports each code edit after its write returns; killed at a random moment, the
// store must hold the last reported edit or the one in flight, and still open cleanly.
void TestStore::keepsEveryReportedWriteAcrossKill()
{
    constexpr int rounds = 50;
    QElapsedTimer clock;
    clock.start();
    QRandomGenerator random(QRandomGenerator::global()->generate());
    int killedAfterWrites = 0;
    for (int round = 0; round < rounds; ++round) {
        const QString path = freshPath();
        QProcess writer;
        writer.start(QStringLiteral(STORE_WRITER), {path});
        QVERIFY(writer.waitForStarted());
        // Waiting for the end doubles as a sleep that keeps reading the reports.
        QVERIFY(!writer.waitForFinished(int(random.bounded(15, 120))));
        writer.kill();
        QVERIFY(writer.waitForFinished(5000));
        QCOMPARE(writer.exitStatus(), QProcess::CrashExit);
        const qint64 reported = lastReported(writer.readAllStandardOutput());
        if (reported > 0)
            ++killedAfterWrites;

        const SqlitePreferencesStore store(path);
        QCOMPARE(store.filePath(), path);
        QVERIFY(setAsideFiles(path).isEmpty());
        const std::optional<QString> code = store.string(QStringLiteral("code0"));
        if (!code) {
            QCOMPARE(reported, 0);
            continue;
        }
        QVERIFY2(code->startsWith(QStringLiteral("fd ")), qPrintable(*code));
        const qint64 stored = code->mid(3).toLongLong();
        QVERIFY2(stored == reported || stored == reported + 1,
                 qPrintable(QStringLiteral("round %1: reported %2, stored %3").arg(round).arg(reported).arg(stored)));
    }
    // Most kills must land while edits are being written, or the test shows nothing.
    QVERIFY2(killedAfterWrites >= rounds / 2, qPrintable(QString::number(killedAfterWrites)));
    qInfo("%d rounds, %d killed after reported writes, %lld ms", rounds, killedAfterWrites,
          static_cast<long long>(clock.elapsed()));
}

QTEST_GUILESS_MAIN(TestStore)
#include "tst_store.moc"
