// Arbitrary stored values, of any kind and bytes, under every key start-up reads; start-up must
// never crash and must sanitise what it finds.
#include "app/Studio.h"
#include "curriculum/Missions.h"
#include "curriculum/Themes.h"
#include "profile/SqlitePreferencesStore.h"

#include <QCoreApplication>
#include <QDir>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace {

const QStringList keys{
    QStringLiteral("completed"), QStringLiteral("creations"), QStringLiteral("freeCode"), QStringLiteral("code0"),
    QStringLiteral("playerName"), QStringLiteral("turtleNames"), QStringLiteral("turtle"), QStringLiteral("theme"),
    QStringLiteral("hasCompletedWelcome"),
};
const QStringList kinds{
    QStringLiteral("string"), QStringLiteral("integer"), QStringLiteral("real"), QStringLiteral("boolean"),
    QStringLiteral("data"), QStringLiteral("array"), QStringLiteral("dictionary"), QStringLiteral("other"),
};

// Reads the input as records: key, kind, column type, length, bytes.
class Input
{
public:
    Input(const uint8_t *data, size_t size) : m_data(data), m_size(size) {}
    bool atEnd() const { return m_at >= m_size; }
    uint8_t byte() { return atEnd() ? 0 : m_data[m_at++]; }
    QByteArray bytes(size_t count)
    {
        count = std::min(count, m_size - std::min(m_at, m_size));
        const QByteArray out(reinterpret_cast<const char *>(m_data + m_at), qsizetype(count));
        m_at += count;
        return out;
    }

private:
    const uint8_t *m_data;
    size_t m_size;
    size_t m_at = 0;
};

// The column as SQLite will hold it: text, blob, integer, real or null.
QVariant column(uint8_t type, const QByteArray &bytes)
{
    switch (type % 5) {
    case 0: return QString::fromUtf8(bytes);
    case 1: return bytes;
    case 2: {
        qint64 n = 0;
        for (const char b : bytes.left(8))
            n = (n << 8) | uchar(b);
        return n;
    }
    case 3: return bytes.toDouble();
    default: return QVariant(QMetaType(QMetaType::QString));
    }
}

bool writeRows(const QString &path, Input &input)
{
    bool ok = true;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("fuzz"));
        db.setDatabaseName(path);
        QSqlQuery query(db);
        ok = db.open()
            && query.exec(QStringLiteral("CREATE TABLE preferences (key TEXT PRIMARY KEY NOT NULL, kind TEXT NOT NULL, value)"))
            && query.prepare(QStringLiteral("INSERT OR REPLACE INTO preferences VALUES (?, ?, ?)"));
        while (ok && !input.atEnd()) {
            const QString key = keys.at(input.byte() % keys.size());
            const QString kind = kinds.at(input.byte() % kinds.size());
            const uint8_t type = input.byte();
            const QByteArray bytes = input.bytes(input.byte());
            query.bindValue(0, key);
            query.bindValue(1, kind);
            query.bindValue(2, column(type, bytes));
            ok = query.exec();
        }
    }
    QSqlDatabase::removeDatabase(QStringLiteral("fuzz"));
    return ok;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication app(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("store/preferences.sqlite"));
    QDir(folder.filePath(QStringLiteral("store"))).removeRecursively();
    QDir().mkpath(folder.filePath(QStringLiteral("store")));
    Input input(data, size);
    if (!writeRows(path, input))
        return 0;

    SqlitePreferencesStore store(path);
    if (store.filePath() != path)
        __builtin_trap();
    const Studio studio(store, false);
    const int badges = int(studio.completed().size());
    for (const int index : studio.completed()) {
        if (index < 0 || index >= missions().size())
            __builtin_trap();
    }
    if (studio.turtle() < 0 || studio.turtle() > Studio::royalCompanion || !studio.isTurtleUnlocked(studio.turtle()))
        __builtin_trap();
    if (studio.theme() < 0 || studio.theme() >= themes().size() || themes().at(studio.theme()).unlock > badges)
        __builtin_trap();
    // Cleaned: no control characters, no runs of blanks, nothing blank in front. (Cutting to
    // 24 characters may leave a blank at the end, so cleaning is not idempotent.)
    const QString name = studio.playerName();
    if (name.startsWith(u' ') || name.contains(QStringLiteral("  "))
        || std::any_of(name.cbegin(), name.cend(), [](QChar c) { return c.category() == QChar::Other_Control; }))
        __builtin_trap();
    // The sanitised companion and canvas are written back, and the store takes writes.
    if (!studio.canSave() || store.integer(QStringLiteral("turtle")) != studio.turtle()
        || store.integer(QStringLiteral("theme")) != studio.theme())
        __builtin_trap();
    if (!studio.message().startsWith(QStringLiteral("Ready when you are")) || studio.mission() != 0 || studio.free())
        __builtin_trap();
    return 0;
}
