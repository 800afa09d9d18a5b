#include "app/Studio.h"

#include "profile/PreferencesStore.h"

#include <QDir>

namespace {

QString describe(const PreferencesStore &store)
{
    const QString folder = QDir::toNativeSeparators(store.folder());
    switch (store.writeProblem()) {
    case PreferencesStore::WriteProblem::None:
        return {};
    case PreferencesStore::WriteProblem::ReadOnly:
        return QStringLiteral("Saved work lives in %1, which is read-only.").arg(folder);
    case PreferencesStore::WriteProblem::DiskFull:
        return QStringLiteral("Saved work lives in %1, and the disk is full.").arg(folder);
    case PreferencesStore::WriteProblem::Blocked:
        return folder.isEmpty() ? QStringLiteral("There is no folder to save work in.")
                                : QStringLiteral("Saved work lives in %1, but a file or folder is in the way.").arg(folder);
    case PreferencesStore::WriteProblem::Failed:
        break;
    }
    return QStringLiteral("Saved work lives in %1, which cannot be written right now.").arg(folder);
}

} // namespace

// The child keeps playing while saving fails: every change stays in this run, the screens say
// that it will not last, and the store is asked again until it takes everything.
void Studio::noteWritability()
{
    const bool canSave = m_defaults.writeProblem() == PreferencesStore::WriteProblem::None;
    if (canSave)
        m_saveRetry.stop();
    else if (!m_saveRetry.isActive())
        m_saveRetry.start();
    const QString problem = describe(m_defaults);
    if (m_canSave == canSave && m_saveProblem == problem)
        return;
    m_canSave = canSave;
    m_saveProblem = problem;
    emit canSaveChanged();
}

void Studio::retrySaving()
{
    m_defaults.retryWrites();
    noteWritability();
}
