#include "app/Studio.h"

#include "curriculum/Missions.h"
#include "curriculum/Themes.h"
#include "profile/CompanionPictures.h"
#include "profile/NameRules.h"
#include "profile/PreferencesStore.h"

#include <QImageReader>
#include <QRegularExpression>

#include <algorithm>

namespace {

const QString completedKey = QStringLiteral("completed");
const QString creationsKey = QStringLiteral("creations");
const QString freeCodeKey = QStringLiteral("freeCode");
const QString playerNameKey = QStringLiteral("playerName");
const QString turtleNamesKey = QStringLiteral("turtleNames");
const QString turtleKey = QStringLiteral("turtle");
const QString themeKey = QStringLiteral("theme");
const QString welcomeKey = QStringLiteral("hasCompletedWelcome");

// The companion picture sheet: 2 × 2 pictures, Clover, Peaches, then Orbit, Your Majesty.
const QString pictureSheet = QStringLiteral(":/MarbleCove/resources/turtles.png");

bool isGameKey(const QString &key)
{
    static const QSet<QString> fixed{completedKey, creationsKey, freeCodeKey, playerNameKey,
                                     turtleNamesKey, turtleKey, themeKey, welcomeKey};
    static const QRegularExpression missionCode(QStringLiteral("\\Acode[0-9]+\\z"));
    return fixed.contains(key) || missionCode.match(key).hasMatch();
}

} // namespace

void Studio::startUp(bool loadAssets)
{
    QSet<int> completed;
    for (const qint64 index : m_defaults.integerArray(completedKey).value_or(QList<qint64>())) {
        if (index >= 0 && index < missions().size())
            completed.insert(int(index));
    }
    setCompleted(completed);

    setTurtle(int(std::clamp<qint64>(m_defaults.integer(turtleKey), 0, royalCompanion)));
    setTurtleNames(m_defaults.stringDictionary(turtleNamesKey).value_or(QMap<QString, QString>()));
    setHasCompletedWelcome(m_defaults.boolean(welcomeKey));
    setPlayerName(cleanName(m_defaults.string(playerNameKey).value_or(QString())));
    setWelcome(needsIntroduction());
    if (!isTurtleUnlocked(m_turtle))
        setTurtle(0);

    setTheme(int(std::clamp<qint64>(m_defaults.integer(themeKey), 0, themes().size() - 1)));
    if (themes().at(m_theme).unlock > badges())
        setTheme(0);

    // The gallery is read and decoded when it is first needed, not before the window shows.

    if (loadAssets)
        loadCompanionPictures();

    loadCode(storedCode(QStringLiteral("code0"), missions().first().starter));
    refreshTarget();
    setMessage(m_playerName.isEmpty() ? QStringLiteral("Ready when you are.")
                                      : QStringLiteral("Ready when you are, ") + m_playerName + u'.');
}

// A missing or unreadable sheet leaves the list empty; every screen copes with that.
void Studio::loadCompanionPictures()
{
    m_images = cutCompanionPictures(QImageReader(pictureSheet).read());
}

void Studio::resetGame()
{
    // A creation still on its way is stored before everything is erased, not after.
    finishSaving();
    stop();
    m_switching = true;
    setMission(0);
    setFree(false);
    setCode(missions().first().starter);
    setCompleted({});
    m_creations.setStored(std::nullopt);
    emit creationsChanged();
    setCreationTitle(QString());
    setPlayerName(QString());
    setTurtleNames({});
    setTurtle(0);
    setTheme(0);
    setHasCompletedWelcome(false);
    setHint(0);
    setShowTarget(false);
    setSpeed(defaultSpeed);
    setFreshReward(false);
    setPlayerSettings(false);
    setCompanionSettings(false);
    setCelebration(false);
    setCollection(false);
    setGallery(false);
    setSaving(false);
    setGuide(false);
    setMap(false);
    m_resetAfterProfileDismissal = false;
    reset();
    refreshTarget();
    for (const QString &key : m_defaults.keys()) {
        if (isGameKey(key))
            m_defaults.remove(key);
    }
    m_switching = false;
    setMessage(QStringLiteral("Ready for a brand-new adventure."));
    setWelcome(true);
}

void Studio::requestGameReset()
{
    m_resetAfterProfileDismissal = true;
    setPlayerSettings(false);
}

void Studio::finishProfileDismissal()
{
    if (m_resetAfterProfileDismissal)
        resetGame();
}
