#pragma once

#include "curriculum/MissionCheck.h"
#include "gallery/Creation.h"
#include "gallery/StoredGallery.h"
#include "language/Instruction.h"
#include "language/LogoParser.h"
#include "turtle/Stroke.h"
#include "turtle/Turtle.h"

#include <QImage>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPointF>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QElapsedTimer>
#include <QThreadPool>
#include <QTimer>
#include <QVariantMap>

#include <functional>
#include <optional>

class PreferencesStore;

// All application state, in one observable object that every screen binds to.
// Properties are declared in one fixed order; observed ones notify on every change.
class Studio : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int mission READ mission NOTIFY missionChanged)
    Q_PROPERTY(QString code READ code WRITE setCode NOTIFY codeChanged)
    Q_PROPERTY(QList<int> completed READ completedInOrder NOTIFY completedChanged)
    Q_PROPERTY(int turtle READ turtle WRITE setTurtle NOTIFY turtleChanged)
    Q_PROPERTY(QString playerName READ playerName NOTIFY playerNameChanged)
    Q_PROPERTY(bool playerSettings READ playerSettings WRITE setPlayerSettings NOTIFY playerSettingsChanged)
    Q_PROPERTY(bool welcome READ welcome WRITE setWelcome NOTIFY welcomeChanged)
    Q_PROPERTY(bool companionSettings READ companionSettings WRITE setCompanionSettings NOTIFY companionSettingsChanged)
    Q_PROPERTY(bool hasCompletedWelcome READ hasCompletedWelcome NOTIFY hasCompletedWelcomeChanged)
    Q_PROPERTY(QMap<QString, QString> turtleNames READ turtleNames NOTIFY turtleNamesChanged)
    Q_PROPERTY(int theme READ theme WRITE setTheme NOTIFY themeChanged)
    Q_PROPERTY(QList<Stroke> strokes READ strokes NOTIFY strokesChanged)
    Q_PROPERTY(QPointF point READ point NOTIFY pointChanged)
    Q_PROPERTY(double heading READ heading NOTIFY headingChanged)
    Q_PROPERTY(bool running READ running NOTIFY runningChanged)
    Q_PROPERTY(QString message READ message WRITE setMessage NOTIFY messageChanged)
    // The message as a screen reader hears it: an error's comes with the line of the word it is about.
    Q_PROPERTY(QString spokenMessage READ spokenMessage NOTIFY messageChanged)
    Q_PROPERTY(int hint READ hint NOTIFY hintChanged)
    Q_PROPERTY(bool free READ free NOTIFY freeChanged)
    Q_PROPERTY(bool celebration READ celebration WRITE setCelebration NOTIFY celebrationChanged)
    Q_PROPERTY(bool collection READ collection WRITE setCollection NOTIFY collectionChanged)
    Q_PROPERTY(bool gallery READ gallery WRITE setGallery NOTIFY galleryChanged)
    Q_PROPERTY(bool saving READ saving WRITE setSaving NOTIFY savingChanged)
    Q_PROPERTY(bool guide READ guide WRITE setGuide NOTIFY guideChanged)
    Q_PROPERTY(bool map READ map WRITE setMap NOTIFY mapChanged)
    Q_PROPERTY(QList<Creation> creations READ creations NOTIFY creationsChanged)
    Q_PROPERTY(QString creationTitle READ creationTitle WRITE setCreationTitle NOTIFY creationTitleChanged)
    Q_PROPERTY(bool showTarget READ showTarget WRITE setShowTarget NOTIFY showTargetChanged)
    Q_PROPERTY(double speed READ speed WRITE setSpeed NOTIFY speedChanged)
    Q_PROPERTY(int stepIndex READ stepIndex NOTIFY stepIndexChanged)
    Q_PROPERTY(int stepTotal READ stepTotal NOTIFY stepTotalChanged)
    Q_PROPERTY(QString currentCommand READ currentCommand NOTIFY currentCommandChanged)
    Q_PROPERTY(bool freshReward READ freshReward NOTIFY freshRewardChanged)
    Q_PROPERTY(QList<Stroke> targetStrokes READ targetStrokes NOTIFY targetStrokesChanged)
    Q_PROPERTY(QList<Stroke> plannedStrokes READ plannedStrokes NOTIFY plannedStrokesChanged)
    Q_PROPERTY(QString drawingSource READ drawingSource NOTIFY drawingSourceChanged)
    Q_PROPERTY(QStringList names READ names CONSTANT)

    // Derived from the state above.
    Q_PROPERTY(int badges READ badges NOTIFY completedChanged)
    Q_PROPERTY(int experience READ experience NOTIFY completedChanged)
    Q_PROPERTY(QString rank READ rank NOTIFY completedChanged)
    Q_PROPERTY(QString turtleName READ turtleName NOTIFY turtleNameChanged)
    Q_PROPERTY(QStringList shownNames READ shownNames NOTIFY turtleNamesChanged)
    Q_PROPERTY(bool needsIntroduction READ needsIntroduction NOTIFY needsIntroductionChanged)
    Q_PROPERTY(QString worldTitle READ worldTitle NOTIFY playerNameChanged)
    Q_PROPERTY(QString galleryTitle READ galleryTitle NOTIFY playerNameChanged)
    Q_PROPERTY(QString treasureTitle READ treasureTitle NOTIFY playerNameChanged)
    Q_PROPERTY(QString avatarLetter READ avatarLetter NOTIFY playerNameChanged)
    Q_PROPERTY(int announcedTheme READ announcedTheme NOTIFY announcementsChanged)
    Q_PROPERTY(bool announcesRoyalCompanion READ announcesRoyalCompanion NOTIFY announcementsChanged)
    // Links between the code and the drawing; a place is {line, column, length}, or empty for none.
    Q_PROPERTY(QVariantMap runPlace READ runPlace NOTIFY runPlaceChanged)
    Q_PROPERTY(QVariantMap errorPlace READ errorPlace NOTIFY errorPlaceChanged)
    Q_PROPERTY(QString differenceSentence READ differenceSentence NOTIFY differenceChanged)
    Q_PROPERTY(QList<Stroke> missingStrokes READ missingStrokes NOTIFY differenceChanged)
    Q_PROPERTY(QList<Stroke> extraStrokes READ extraStrokes NOTIFY differenceChanged)
    Q_PROPERTY(bool showDifference READ showDifference WRITE setShowDifference NOTIFY differenceChanged)
    // Whether changes reach the disk; when not, why, for a grown-up.
    Q_PROPERTY(bool canSave READ canSave NOTIFY canSaveChanged)
    Q_PROPERTY(QString saveProblem READ saveProblem NOTIFY canSaveChanged)
    // A saved creation is on its way to the disk: the save sheet waits for it before another.
    Q_PROPERTY(bool storingCreation READ storingCreation NOTIFY storingCreationChanged)

public:
    static constexpr double defaultSpeed = 0.06;
    static constexpr double slowestSpeed = 0.35;
    static constexpr double fastestSpeed = 0.01;
    static constexpr int royalCompanion = 3;
    static constexpr int royalBadges = 3;
    // The longest program text the editor takes: ten characters for every token a program may
    // hold, far more than any program can use, and short enough to lay out at once.
    static constexpr qsizetype maxCodeLength = 10 * LogoParser::maxTokens;

    // Restores the saved state from `defaults`, which must outlive the studio.
    explicit Studio(PreferencesStore &defaults, bool loadAssets = true, QObject *parent = nullptr);
    ~Studio() override;

    PreferencesStore &defaults() const { return m_defaults; }
    int mission() const { return m_mission; }
    const QString &code() const { return m_code; }
    void setCode(const QString &code);
    // Adds an example on a line of its own; code that already ends with a line break gets no
    // empty line in between.
    Q_INVOKABLE void appendCode(const QString &example);
    const QSet<int> &completed() const { return m_completed; }
    QList<int> completedInOrder() const;
    int turtle() const { return m_turtle; }
    void setTurtle(int turtle);
    const QString &playerName() const { return m_playerName; }
    bool playerSettings() const { return m_playerSettings; }
    void setPlayerSettings(bool shown);
    bool resetAfterProfileDismissal() const { return m_resetAfterProfileDismissal; }
    bool welcome() const { return m_welcome; }
    void setWelcome(bool shown);
    bool companionSettings() const { return m_companionSettings; }
    void setCompanionSettings(bool shown);
    bool hasCompletedWelcome() const { return m_hasCompletedWelcome; }
    const QMap<QString, QString> &turtleNames() const { return m_turtleNames; }
    int theme() const { return m_theme; }
    void setTheme(int theme);
    const QList<Stroke> &strokes() const { return m_drawing.strokes; }
    QPointF point() const { return m_drawing.point; }
    double heading() const { return m_drawing.heading; }
    bool running() const { return m_running; }
    const QString &message() const { return m_message; }
    void setMessage(const QString &message);
    const QString &spokenMessage() const { return m_spokenMessage; }
    int hint() const { return m_hint; }
    bool free() const { return m_free; }
    bool celebration() const { return m_celebration; }
    void setCelebration(bool shown);
    bool collection() const { return m_collection; }
    void setCollection(bool shown);
    bool gallery() const { return m_gallery; }
    void setGallery(bool shown);
    bool saving() const { return m_saving; }
    void setSaving(bool shown);
    bool guide() const { return m_guide; }
    void setGuide(bool shown);
    bool map() const { return m_map; }
    void setMap(bool shown);
    // Read from the store and decoded when first asked for, unless decoded ahead.
    const QList<Creation> &creations() const;
    // Starts decoding the stored gallery on a worker thread, so that opening it does not wait.
    Q_INVOKABLE void decodeCreationsAhead();
    const QString &creationTitle() const { return m_creationTitle; }
    void setCreationTitle(const QString &title);
    bool showTarget() const { return m_showTarget; }
    void setShowTarget(bool shown);
    double speed() const { return m_speed; }
    void setSpeed(double speed);
    int stepIndex() const { return m_stepIndex; }
    int stepTotal() const { return m_stepTotal; }
    const QString &currentCommand() const { return m_currentCommand; }
    bool freshReward() const { return m_freshReward; }
    const QList<Stroke> &targetStrokes() const { return m_targetStrokes; }
    const QList<Stroke> &plannedStrokes() const { return m_plannedStrokes; }
    bool pen() const { return m_drawing.pen; }
    const QString &color() const { return m_drawing.color; }
    double width() const { return m_drawing.width; }
    bool switching() const { return m_switching; }
    const QString &queuedSource() const { return m_queuedSource; }
    const QString &drawingSource() const { return m_drawingSource; }
    QStringList names() const { return m_names; }
    const QList<QImage> &images() const { return m_images; }
    // A companion's picture; a null image when it is missing.
    Q_INVOKABLE QImage picture(int index) const { return m_images.value(index); }

    // The turtle
    void apply(const Instruction &instruction);
    void resetDrawing();
    QList<Stroke> simulate(const QString &source) const;

    // The run and step driver
    bool prepare();
    void executeNext();
    Q_INVOKABLE void step();
    Q_INVOKABLE void run();
    Q_INVOKABLE void stop();
    Q_INVOKABLE void reset();

    // Missions and progress
    Q_INVOKABLE void select(int mission);
    Q_INVOKABLE void enterFree();
    void finish();
    bool passes(const QString &source) const;
    void refreshTarget();
    Q_INVOKABLE void requestHint();
    int badges() const { return int(m_completed.size()); }
    int experience() const;
    QString rank() const;
    Q_INVOKABLE bool isMissionOpen(int mission) const;
    Q_INVOKABLE bool isCompleted(int mission) const { return m_completed.contains(mission); }
    Q_INVOKABLE bool isThemeAvailable(int theme) const;
    int announcedTheme() const;
    bool announcesRoyalCompanion() const;

    // The gallery and picture export
    // The creation is written apart; the message and the closing sheet come once it is safe.
    Q_INVOKABLE void saveCreation();
    bool storingCreation() const { return m_storingCreation; }
    // Waits for a creation on its way to the disk and reports it now, as quitting and erasing must.
    void finishSaving();
    void openCreation(const Creation &creation);
    QByteArray pngData() const;
    // Whether there is a picture to export; otherwise says so, and no save dialog should open.
    Q_INVOKABLE bool prepareExport();
    // Writes the picture to the place the child chose in the save dialog, apart from the
    // window; the message tells how it went once it is written.
    Q_INVOKABLE void exportPNG(const QString &path);
    // The same drawing as lines in an SVG file, for printing large or editing.
    Q_INVOKABLE void exportSVG(const QString &path);
    // Opens the program an exported picture carries in free play; any other file is refused.
    Q_INVOKABLE void openPicture(const QString &path);

    // Saved state and erase
    bool canSave() const { return m_canSave; }
    const QString &saveProblem() const { return m_saveProblem; }
    // Writes again what could not be written; a timer calls it while saving fails.
    void retrySaving();
    void resetGame();
    Q_INVOKABLE void requestGameReset();
    Q_INVOKABLE void finishProfileDismissal();

    // Names
    static QString cleanTurtleName(const QString &text);
    Q_INVOKABLE bool isTurtleUnlocked(int index) const;
    bool needsIntroduction() const;
    Q_INVOKABLE QString displayName(int index) const;
    QString turtleName() const;
    // Every companion's shown name, by index.
    QStringList shownNames() const;
    Q_INVOKABLE bool saveCompanion(int index, const QString &name);
    Q_INVOKABLE bool savePlayerName(const QString &name);
    Q_INVOKABLE void finishWelcome(int index, const QString &name, const QString &player);
    Q_INVOKABLE void replayWelcome();
    QString worldTitle() const;
    QString galleryTitle() const;
    QString treasureTitle() const;
    QString avatarLetter() const;

    // Links between the code and the drawing
    // The word of the instruction just carried out while a run or a series of steps goes on,
    // with callLine, callColumn and callLength for the outermost recipe call it came from.
    QVariantMap runPlace() const;
    // The word the last refused Run or Step is about, until the next edit.
    const QVariantMap &errorPlace() const { return m_errorPlace; }
    // After a finished mission run that did not pass: what differs from the mission, until the
    // next edit, Run or Step.
    const QString &differenceSentence() const { return m_difference.sentence; }
    const QList<Stroke> &missingStrokes() const { return m_difference.missing; }
    const QList<Stroke> &extraStrokes() const { return m_difference.extra; }
    bool showDifference() const { return m_showDifference; }
    void setShowDifference(bool shown);
    // The command word that drew a stroke of the drawing, while the code is the code that drew it.
    Q_INVOKABLE QVariantMap strokePlace(int stroke) const;
    // The strokes the command at the cursor drew (all of them, for a REPEAT or a recipe call).
    Q_INVOKABLE QList<int> strokesMadeAt(int line, int column) const;

signals:
    void missionChanged();
    void codeChanged();
    void completedChanged();
    void turtleChanged();
    void playerNameChanged();
    void playerSettingsChanged();
    void welcomeChanged();
    void companionSettingsChanged();
    void hasCompletedWelcomeChanged();
    void turtleNamesChanged();
    void themeChanged();
    void strokesChanged();
    void pointChanged();
    void headingChanged();
    void runningChanged();
    void messageChanged();
    void hintChanged();
    void freeChanged();
    void celebrationChanged();
    void collectionChanged();
    void galleryChanged();
    void savingChanged();
    void guideChanged();
    void mapChanged();
    void creationsChanged();
    void creationTitleChanged();
    void showTargetChanged();
    void speedChanged();
    void stepIndexChanged();
    void stepTotalChanged();
    void currentCommandChanged();
    void freshRewardChanged();
    void targetStrokesChanged();
    void plannedStrokesChanged();
    void drawingSourceChanged();
    void turtleNameChanged();
    void announcementsChanged();
    void needsIntroductionChanged();
    // A drawing has been carried out to its last instruction and judged.
    void drawingFinished();
    void runPlaceChanged();
    void errorPlaceChanged();
    void differenceChanged();
    void canSaveChanged();
    void storingCreationChanged();

private:
    void exportPicture(const QString &path, std::function<QByteArray()> encode);
    // pngData's work, on copies of the drawing, for a worker thread.
    std::function<QByteArray()> pngEncoder() const;
    void setStoringCreation(bool storing);
    void startUp(bool loadAssets);
    void loadCompanionPictures();
    void setMission(int mission);
    void setCompleted(const QSet<int> &completed);
    void setPlayerName(const QString &name);
    void setHasCompletedWelcome(bool done);
    void setTurtleNames(const QMap<QString, QString> &names);
    void setHint(int hint);
    void setFree(bool free);
    void setFreshReward(bool fresh);
    void setRunning(bool running);
    void setStepIndex(int index);
    void setStepTotal(int total);
    void setCurrentCommand(const QString &command);
    void setPlannedStrokes(const QList<Stroke> &strokes);
    void setDrawingSource(const QString &source);
    // Replaces the code without saving it: stored or starter code is already where it belongs.
    void loadCode(const QString &code);
    // The code stored under `key`, or `fallback` when there is none. Code too long for the
    // editor is kept in a file beside the store and taken out of it, so it is not met again.
    QString storedCode(const QString &key, const QString &fallback);
    // Emits for every observed turtle field that changed since these readings.
    void publishDrawing(QPointF point, double heading, qsizetype strokeCount);
    // The values derived from names, read before a change so that only real changes notify.
    struct NameReadings
    {
        QString turtleName;
        bool needsIntroduction;
    };
    NameReadings readNames() const { return {turtleName(), needsIntroduction()}; }
    void publishNames(const NameReadings &before);
    void advanceRun();
    void setErrorPlace(SourcePlace place);
    // Shows an error's message and marks its word; the line is heard with the message, in one go.
    void tellError(const QString &message, SourcePlace place);
    void setDifference(const MissionDifference &difference);
    // Keeps one source instruction per stroke, after a turtle step or a wipe.
    void noteStrokeSources(int instruction);
    void noteWritability();

    PreferencesStore &m_defaults;
    int m_mission = 0;
    QString m_code;
    QSet<int> m_completed;
    int m_turtle = 0;
    QString m_playerName;
    bool m_playerSettings = false;
    bool m_resetAfterProfileDismissal = false;
    bool m_welcome = false;
    bool m_companionSettings = false;
    bool m_hasCompletedWelcome = false;
    QMap<QString, QString> m_turtleNames;
    int m_theme = 0;
    // strokes, point and heading (observed) and pen, colour and width (plain) live together.
    Turtle m_drawing;
    bool m_running = false;
    QString m_message = QStringLiteral("Ready when you are.");
    QString m_spokenMessage = m_message;
    int m_hint = 0;
    bool m_free = false;
    bool m_celebration = false;
    bool m_collection = false;
    bool m_gallery = false;
    bool m_saving = false;
    bool m_guide = false;
    bool m_map = false;
    // `creations` with its stored bytes, so a save encodes only the new creation.
    mutable StoredGallery m_creations;
    QString m_creationTitle;
    bool m_showTarget = false;
    double m_speed = defaultSpeed;
    int m_stepIndex = 0;
    int m_stepTotal = 0;
    QString m_currentCommand;
    bool m_freshReward = false;
    QList<Stroke> m_targetStrokes;
    QList<Stroke> m_plannedStrokes;
    // The pacing of an animated run: the run's number while one is in progress.
    std::optional<quint64> m_task;
    quint64 m_runs = 0;
    QTimer m_pause;
    // Since the run started, and when its next instruction (or its end) is due on that clock.
    QElapsedTimer m_runClock;
    qint64 m_nextDue = 0;
    bool m_switching = false;
    QList<Instruction> m_queue;
    QString m_queuedSource;
    // The words of the queued source and their places, for the links between code and drawing.
    QStringList m_queuedTokens;
    QList<SourcePlace> m_queuedPlaces;
    QString m_drawingSource;
    const QStringList m_names{QStringLiteral("Clover"), QStringLiteral("Peaches"), QStringLiteral("Orbit"),
                              QStringLiteral("Your Majesty")};
    QList<QImage> m_images;
    // For each stroke of the drawing, the queued instruction that drew it.
    QList<int> m_strokeSources;
    QVariantMap m_errorPlace;
    MissionDifference m_difference;
    bool m_showDifference = false;
    bool m_canSave = true;
    QString m_saveProblem;
    QTimer m_saveRetry;
    bool m_storingCreation = false;
    // Pictures are exported here one at a time; destroyed first, it waits for the last one.
    QThreadPool m_exports;
};
