#include "profile/StoreFiles.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStorageInfo>

#include <array>

namespace {

const QLatin1String unreadableTag(".unreadable-");

QString stamp()
{
    return QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
}

// `base` itself, or with "-2", "-3", … when that name is taken.
QString freeName(const QString &base)
{
    QString name = base;
    for (int n = 2; QFileInfo::exists(name); ++n)
        name = base + u'-' + QString::number(n);
    return name;
}

// Keeps a file name readable and safe whatever the key holds.
QString keyForFileName(const QString &key)
{
    QString safe;
    for (const char byte : key.toUtf8().left(64)) {
        const uchar c = uchar(byte);
        if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '-')
            safe += QLatin1Char(char(c));
        else
            safe += u'%' + QString::number(c, 16).toUpper().rightJustified(2, u'0');
    }
    return safe;
}

// A set-aside folder that got the journals but not yet the store, left by a start cut short.
QString unfinishedSetAside(const QFileInfo &store)
{
    const QStringList folders = store.dir().entryList({store.fileName() + unreadableTag + u'*'},
                                                      QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &folder : folders) {
        if (!QFileInfo::exists(store.dir().filePath(folder) + u'/' + store.fileName()))
            return store.dir().filePath(folder);
    }
    return {};
}

} // namespace

bool setAsideStore(const QString &storeFile)
{
    const QFileInfo store(storeFile);
    QString folder = unfinishedSetAside(store);
    if (folder.isEmpty()) {
        folder = freeName(store.absoluteFilePath() + unreadableTag + stamp());
        if (!QDir().mkdir(folder))
            return false;
    }
    const QString target = folder + u'/' + store.fileName();
    // The main file last: a journal left behind would be replayed into the fresh store, and
    // a store moved without its log would lose the commits in it.
    for (const QLatin1String suffix : {QLatin1String("-journal"), QLatin1String("-wal"), QLatin1String("-shm")}) {
        const QFileInfo journal(storeFile + suffix);
        if (!journal.exists())
            continue;
        // After a move cut short, opening the store to look at it makes an empty log and a
        // fresh index beside it; the ones already moved are the real ones.
        if (QFileInfo::exists(target + suffix) && (journal.size() == 0 || suffix == QLatin1String("-shm"))) {
            QFile::remove(journal.filePath());
            continue;
        }
        if (!QFile::rename(journal.filePath(), target + suffix))
            return false;
    }
    if (!QFile::rename(storeFile, target))
        return false;
    qWarning("Preferences: %s could not be read and was set aside in %s", qPrintable(storeFile), qPrintable(folder));
    return true;
}

bool setAsideValue(const QString &storeFile, const QString &key, const QByteArray &bytes)
{
    QSaveFile file(freeName(storeFile + u'.' + keyForFileName(key) + unreadableTag + stamp()));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        return false;
    qWarning("Preferences: the unreadable value of %s was kept in %s", qPrintable(key), qPrintable(file.fileName()));
    return true;
}

PreferencesStore::WriteProblem diagnoseStoreLocation(const QString &storeFile)
{
    using Problem = PreferencesStore::WriteProblem;
    QFileInfo at(storeFile);
    if (at.isDir())
        return Problem::Blocked;
    // The nearest part of the path that exists: a file there means a folder is blocked.
    while (!at.exists() && !at.isRoot())
        at = QFileInfo(at.absolutePath());
    if (at.absoluteFilePath() != QFileInfo(storeFile).absoluteFilePath() && !at.isDir())
        return Problem::Blocked;
    const QStorageInfo storage(at.absoluteFilePath());
    if (storage.isValid() && storage.isReadOnly())
        return Problem::ReadOnly;
    if (storage.isValid() && storage.bytesAvailable() < 64 * 1024)
        return Problem::DiskFull;
    const QFileInfo folder(at.isDir() ? at.absoluteFilePath() : at.absolutePath());
    if (!folder.isWritable() || (at.isFile() && !at.isWritable()))
        return Problem::ReadOnly;
    return Problem::Failed;
}
