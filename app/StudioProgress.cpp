#include "app/Studio.h"

#include "curriculum/MissionCheck.h"
#include "curriculum/Missions.h"
#include "curriculum/Progress.h"
#include "curriculum/Themes.h"
#include "profile/PreferencesStore.h"

#include <algorithm>

namespace {

const QString freeStarter = QStringLiteral("; Dream it. Draw it.\n");

} // namespace

void Studio::select(int mission)
{
    if (mission < 0 || mission >= missions().size() || !isMissionOpen(mission))
        return;
    stop();
    m_switching = true;
    setMission(mission);
    setFree(false);
    setCode(storedCode(QStringLiteral("code") + QString::number(mission), missions().at(mission).starter));
    m_switching = false;
    setHint(0);
    reset();
    refreshTarget();
    setMessage(QStringLiteral("Let's try ") + missions().at(mission).title.toLower() + u'.');
}

void Studio::enterFree()
{
    stop();
    m_switching = true;
    setFree(true);
    setCode(storedCode(QStringLiteral("freeCode"), freeStarter));
    m_switching = false;
    reset();
    setMessage(QStringLiteral("Your imagination station is ready."));
}

void Studio::finish()
{
    setDrawingSource(m_queuedSource);
    if (!m_free && passes(m_queuedSource)) {
        const bool fresh = !m_completed.contains(m_mission);
        QSet<int> completed = m_completed;
        completed.insert(m_mission);
        // Badges another window earned since start-up are kept, here and in the store.
        m_defaults.update(QStringLiteral("completed"), [&](const QVariant &stored) -> std::optional<QVariant> {
            for (const qint64 index : PreferencesStore::asIntegerArray(stored).value_or(QList<qint64>())) {
                if (index >= 0 && index < missions().size())
                    completed.insert(int(index));
            }
            QList<qint64> ordered(completed.cbegin(), completed.cend());
            std::sort(ordered.begin(), ordered.end());
            return PreferencesStore::integerArrayValue(ordered);
        });
        setFreshReward(fresh);
        setCompleted(completed);
        setMessage(fresh ? QStringLiteral("You did it! A new badge for your collection.")
                         : QStringLiteral("Beautiful! You nailed this mission again."));
        setCelebration(true);
    } else if (m_free) {
        setMessage(galleryTitle() + QStringLiteral(". Save it to your gallery!"));
    } else {
        setMessage(QStringLiteral("Nice experiment! Try the mission goal, or ask for a hint."));
        setDifference(missionDifference(m_mission, m_drawing.strokes, m_targetStrokes, m_queuedSource));
    }
    emit drawingFinished();
}

bool Studio::passes(const QString &source) const
{
    return missionPasses(m_mission, m_drawing.strokes, m_targetStrokes, source);
}

void Studio::refreshTarget()
{
    m_targetStrokes = missionTarget(m_mission);
    emit targetStrokesChanged();
}

void Studio::requestHint()
{
    setHint(std::min(m_hint + 1, int(missions().at(m_mission).hints.size())));
}

int Studio::experience() const
{
    return experiencePoints(badges());
}

QString Studio::rank() const
{
    return ::rank(badges());
}

bool Studio::isMissionOpen(int mission) const
{
    return ::isMissionOpen(mission, m_completed);
}

bool Studio::isThemeAvailable(int theme) const
{
    return ::isThemeAvailable(theme, badges());
}

// The canvas a fresh badge has just unlocked, or -1.
int Studio::announcedTheme() const
{
    if (!m_freshReward)
        return -1;
    return themeUnlockedAt(badges()).value_or(-1);
}

bool Studio::announcesRoyalCompanion() const
{
    return m_freshReward && badges() == royalBadges;
}
