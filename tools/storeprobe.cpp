// Starts a studio on the user's store the way the application does and prints, on one line,
// what the child would see: the progress, the save notice and where an edit ended up.
//   storeprobe seed         keeps three badges and a name in the store
//   storeprobe              starts, types code, reports
//   storeprobe fill FILE    the same, but fills the disk with FILE first and frees it later
#include "app/Studio.h"
#include "profile/SqlitePreferencesStore.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

namespace {

// Grows `path` until the disk refuses more.
void fillDisk(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return;
    const QByteArray block(64 * 1024, 'x');
    while (file.write(block) == block.size() && file.flush()) {
    }
}

QString storedCode(const QString &file)
{
    if (file.isEmpty())
        return {};
    const SqlitePreferencesStore onDisk(file, SqlitePreferencesStore::Access::ReadOnly);
    return onDisk.string(QStringLiteral("code0")).value_or(QString());
}

QString notice(const Studio &studio)
{
    return studio.canSave() ? QStringLiteral("none") : QStringLiteral("shown: ") + studio.saveProblem();
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments().mid(1);
    SqlitePreferencesStore store;
    if (args.value(0) == QLatin1String("seed")) {
        const bool kept = store.setIntegerArray(QStringLiteral("completed"), {0, 1, 2})
            && store.setString(QStringLiteral("playerName"), QStringLiteral("Ada"))
            && store.setBoolean(QStringLiteral("hasCompletedWelcome"), true);
        return kept ? 0 : 1;
    }
    Studio studio(store, false);
    QString seen = QStringLiteral("%1 badges, \"%2\" | notice %3").arg(studio.badges()).arg(studio.message(), notice(studio));
    const QString typed = QStringLiteral("fd 42 ; typed by the child");
    if (args.value(0) == QLatin1String("fill")) {
        fillDisk(args.value(1));
        studio.setCode(typed);
        seen += QStringLiteral(" | disk filled: notice %1").arg(notice(studio));
        QFile::remove(args.value(1));
        studio.retrySaving();
        seen += QStringLiteral(" | space freed: notice %1").arg(notice(studio));
    } else {
        studio.setCode(typed);
    }
    const bool saved = storedCode(store.filePath()) == typed;
    seen += QStringLiteral(" | typed code %1").arg(saved ? QStringLiteral("saved") : QStringLiteral("stays in the editor, not saved"));
    std::printf("%s\n", qPrintable(seen));
    return 0;
}
