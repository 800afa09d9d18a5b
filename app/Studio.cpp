#include "app/Studio.h"

#include "profile/PreferencesStore.h"

#include <algorithm>

namespace {

// Assigns and notifies only when the value really changes.
template<typename T, typename Signal>
void assign(Studio *studio, T &field, const T &value, Signal changed)
{
    if (field == value)
        return;
    field = value;
    emit(studio->*changed)();
}

} // namespace

Studio::Studio(PreferencesStore &defaults, bool loadAssets, QObject *parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_pause(this)
    , m_saveRetry(this)
{
    m_pause.setObjectName(QStringLiteral("runPause"));
    m_pause.setSingleShot(true);
    m_pause.setTimerType(Qt::PreciseTimer);
    connect(&m_pause, &QTimer::timeout, this, &Studio::advanceRun);
    for (const auto changed : {&Studio::stepIndexChanged, &Studio::runningChanged, &Studio::codeChanged})
        connect(this, changed, this, &Studio::runPlaceChanged);
    m_exports.setMaxThreadCount(1);
    m_saveRetry.setObjectName(QStringLiteral("saveRetry"));
    m_saveRetry.setInterval(3000);
    connect(&m_saveRetry, &QTimer::timeout, this, &Studio::retrySaving);
    m_defaults.setWriteWatcher(this, [this] { noteWritability(); });
    startUp(loadAssets);
    noteWritability();
}

Studio::~Studio()
{
    finishSaving();
    m_defaults.clearWriteWatcher(this);
}

QList<int> Studio::completedInOrder() const
{
    QList<int> indices(m_completed.cbegin(), m_completed.cend());
    std::sort(indices.begin(), indices.end());
    return indices;
}

// Every edit is saved at once, under the slot of the mission or of free play.
void Studio::setCode(const QString &code)
{
    if (m_code == code)
        return;
    if (code.size() > maxCodeLength) {
        // The editor may already show the refused text; hearing of a change puts the kept code back.
        emit codeChanged();
        setMessage(QStringLiteral("That's more code than a program can use. Try a smaller piece."));
        return;
    }
    m_code = code;
    emit codeChanged();
    setErrorPlace({});
    setDifference({});
    if (m_switching)
        return;
    if (m_free)
        m_defaults.setString(QStringLiteral("freeCode"), code);
    else
        m_defaults.setString(QStringLiteral("code") + QString::number(m_mission), code);
}

void Studio::appendCode(const QString &example)
{
    setCode(m_code + (m_code.endsWith(u'\n') ? QString() : QStringLiteral("\n")) + example + u'\n');
}

void Studio::loadCode(const QString &code)
{
    const bool switching = m_switching;
    m_switching = true;
    setCode(code);
    m_switching = switching;
}

QString Studio::storedCode(const QString &key, const QString &fallback)
{
    const std::optional<QString> stored = m_defaults.string(key);
    if (stored && stored->size() > maxCodeLength) {
        if (m_defaults.keepUnreadable(key, stored->toUtf8()))
            m_defaults.remove(key);
        return fallback;
    }
    return stored.value_or(fallback);
}

// Written on every assignment, so that a value sanitised at start-up replaces the stored one.
void Studio::setTurtle(int turtle)
{
    m_defaults.setInteger(QStringLiteral("turtle"), turtle);
    if (m_turtle == turtle)
        return;
    const NameReadings before = readNames();
    m_turtle = turtle;
    emit turtleChanged();
    publishNames(before);
}

void Studio::setTheme(int theme)
{
    m_defaults.setInteger(QStringLiteral("theme"), theme);
    assign(this, m_theme, theme, &Studio::themeChanged);
}

void Studio::setTurtleNames(const QMap<QString, QString> &names)
{
    if (m_turtleNames == names)
        return;
    const NameReadings before = readNames();
    m_turtleNames = names;
    emit turtleNamesChanged();
    publishNames(before);
}

void Studio::setPlayerName(const QString &name)
{
    if (m_playerName == name)
        return;
    const NameReadings before = readNames();
    m_playerName = name;
    emit playerNameChanged();
    publishNames(before);
}

void Studio::setHasCompletedWelcome(bool done)
{
    if (m_hasCompletedWelcome == done)
        return;
    const NameReadings before = readNames();
    m_hasCompletedWelcome = done;
    emit hasCompletedWelcomeChanged();
    publishNames(before);
}

void Studio::publishNames(const NameReadings &before)
{
    if (turtleName() != before.turtleName)
        emit turtleNameChanged();
    if (needsIntroduction() != before.needsIntroduction)
        emit needsIntroductionChanged();
}

void Studio::setMission(int mission) { assign(this, m_mission, mission, &Studio::missionChanged); }

void Studio::setCompleted(const QSet<int> &completed)
{
    if (m_completed == completed)
        return;
    m_completed = completed;
    emit completedChanged();
    emit announcementsChanged();
}

void Studio::setFreshReward(bool fresh)
{
    if (m_freshReward == fresh)
        return;
    m_freshReward = fresh;
    emit freshRewardChanged();
    emit announcementsChanged();
}

void Studio::setPlayerSettings(bool shown) { assign(this, m_playerSettings, shown, &Studio::playerSettingsChanged); }
void Studio::setWelcome(bool shown) { assign(this, m_welcome, shown, &Studio::welcomeChanged); }
void Studio::setCompanionSettings(bool shown) { assign(this, m_companionSettings, shown, &Studio::companionSettingsChanged); }
void Studio::setMessage(const QString &message)
{
    if (m_message == message && m_spokenMessage == message)
        return;
    m_message = m_spokenMessage = message;
    emit messageChanged();
}
void Studio::setHint(int hint) { assign(this, m_hint, hint, &Studio::hintChanged); }
void Studio::setFree(bool free) { assign(this, m_free, free, &Studio::freeChanged); }
void Studio::setCelebration(bool shown) { assign(this, m_celebration, shown, &Studio::celebrationChanged); }
void Studio::setCollection(bool shown) { assign(this, m_collection, shown, &Studio::collectionChanged); }
void Studio::setGallery(bool shown) { assign(this, m_gallery, shown, &Studio::galleryChanged); }
void Studio::setSaving(bool shown) { assign(this, m_saving, shown, &Studio::savingChanged); }
void Studio::setGuide(bool shown) { assign(this, m_guide, shown, &Studio::guideChanged); }
void Studio::setMap(bool shown) { assign(this, m_map, shown, &Studio::mapChanged); }
void Studio::setCreationTitle(const QString &title) { assign(this, m_creationTitle, title, &Studio::creationTitleChanged); }
void Studio::setShowTarget(bool shown) { assign(this, m_showTarget, shown, &Studio::showTargetChanged); }
void Studio::setRunning(bool running) { assign(this, m_running, running, &Studio::runningChanged); }
void Studio::setStepIndex(int index) { assign(this, m_stepIndex, index, &Studio::stepIndexChanged); }
void Studio::setStepTotal(int total) { assign(this, m_stepTotal, total, &Studio::stepTotalChanged); }
void Studio::setCurrentCommand(const QString &command) { assign(this, m_currentCommand, command, &Studio::currentCommandChanged); }

void Studio::setSpeed(double speed)
{
    assign(this, m_speed, qBound(fastestSpeed, speed, slowestSpeed), &Studio::speedChanged);
}

void Studio::setPlannedStrokes(const QList<Stroke> &strokes)
{
    if (m_plannedStrokes.isEmpty() && strokes.isEmpty())
        return;
    m_plannedStrokes = strokes;
    emit plannedStrokesChanged();
}

void Studio::setDrawingSource(const QString &source)
{
    assign(this, m_drawingSource, source, &Studio::drawingSourceChanged);
}
