#pragma once

#include "profile/PreferencesStore.h"

#include <QByteArray>
#include <QString>

// What happens to the files beside the preferences file when something in them cannot be read:
// nothing is ever deleted, it is moved or copied aside under a name that says when.

// Moves the store and its journals into a new folder "<file>.unreadable-<time>" beside it,
// the journals first: a move cut short is finished by the next call, so every commit stays
// with its file and the folder opens as the store it was. False when nothing could be moved.
bool setAsideStore(const QString &storeFile);

// Writes the exact bytes of one stored value to "<file>.<key>.unreadable-<time>" beside the
// store, synced before it returns. False when the file could not be written.
bool setAsideValue(const QString &storeFile, const QString &key, const QByteArray &bytes);

// Why the store file cannot be written, judged from the file system: a file or folder where
// the store or its folder should be, a read-only folder, file or mount, or a full disk.
PreferencesStore::WriteProblem diagnoseStoreLocation(const QString &storeFile);
