#include "profile/DataFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <array>
#include <utility>

namespace {

QString genericDataFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

} // namespace

QString dataFolder()
{
    const QString folder = genericDataFolder();
    return folder.isEmpty() ? QString() : folder + u'/' + QLatin1String(applicationId);
}

QString legacyPreferencesFile()
{
    const QString folder = genericDataFolder();
    return folder.isEmpty() ? QString() : folder + QStringLiteral("/Marble Cove/preferences.sqlite");
}

QString moveStoreFile(const QString &from, const QString &to)
{
    if (from.isEmpty() || !QFileInfo(from).isFile() || QFileInfo::exists(to))
        return to;
    if (!QDir().mkpath(QFileInfo(to).absolutePath()))
        return from;
    // The main file last: while it is still at `from`, the next start repeats the move.
    const std::array<QLatin1String, 4> suffixes{QLatin1String("-shm"), QLatin1String("-wal"),
                                                QLatin1String("-journal"), QLatin1String("")};
    QStringList moved;
    for (const QLatin1String suffix : suffixes) {
        if (!QFileInfo::exists(from + suffix))
            continue;
        if (!QFile::rename(from + suffix, to + suffix)) {
            for (const QString &back : std::as_const(moved))
                QFile::rename(to + back, from + back);
            return from;
        }
        moved.append(suffix);
    }
    return to;
}
