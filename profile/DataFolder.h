#pragma once

#include <QString>

// The application's identity on the desktop: the data folder, the desktop file, the icon and
// the single-instance lock all carry this name.
inline constexpr char applicationId[] = "org.marblecove.MarbleCove";

// The folder that holds the saved state, the set-aside files and the lock:
// the user's data folder (~/.local/share) followed by the application id.
QString dataFolder();

// Where earlier versions kept the preferences file (~/.local/share/Marble Cove).
QString legacyPreferencesFile();

// Moves the preferences file and its journals from `from` to `to` when only `from` exists.
// The journals go first, so a move cut short is finished by the next start and no committed
// write is ever separated from its file. Returns the file to use: `from` when it stays put.
QString moveStoreFile(const QString &from, const QString &to);
