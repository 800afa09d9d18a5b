#pragma once

#include "language/Instruction.h"
#include "turtle/Stroke.h"
#include "turtle/Turtle.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <optional>

// All application state, in one observable object that every screen binds to.
// Properties are declared in one fixed order; observed ones notify on every change.
class Studio : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString code READ code WRITE setCode NOTIFY codeChanged)
    Q_PROPERTY(int turtle READ turtle WRITE setTurtle NOTIFY turtleChanged)
    Q_PROPERTY(QMap<QString, QString> turtleNames READ turtleNames NOTIFY turtleNamesChanged)
    Q_PROPERTY(QList<Stroke> strokes READ strokes NOTIFY strokesChanged)
    Q_PROPERTY(QPointF point READ point NOTIFY pointChanged)
    Q_PROPERTY(double heading READ heading NOTIFY headingChanged)
    Q_PROPERTY(bool running READ running NOTIFY runningChanged)
    Q_PROPERTY(QString message READ message WRITE setMessage NOTIFY messageChanged)
    Q_PROPERTY(double speed READ speed WRITE setSpeed NOTIFY speedChanged)
    Q_PROPERTY(int stepIndex READ stepIndex NOTIFY stepIndexChanged)
    Q_PROPERTY(int stepTotal READ stepTotal NOTIFY stepTotalChanged)
    Q_PROPERTY(QString currentCommand READ currentCommand NOTIFY currentCommandChanged)
    Q_PROPERTY(QList<Stroke> plannedStrokes READ plannedStrokes NOTIFY plannedStrokesChanged)
    Q_PROPERTY(QStringList names READ names CONSTANT)
    Q_PROPERTY(QString turtleName READ turtleName NOTIFY turtleNameChanged)

public:
    static constexpr double defaultSpeed = 0.06;
    static constexpr double slowestSpeed = 0.35;
    static constexpr double fastestSpeed = 0.01;

    explicit Studio(QObject *parent = nullptr);

    const QString &code() const { return m_code; }
    void setCode(const QString &code);
    int turtle() const { return m_turtle; }
    void setTurtle(int turtle);
    const QMap<QString, QString> &turtleNames() const { return m_turtleNames; }
    void setTurtleNames(const QMap<QString, QString> &names);
    const QList<Stroke> &strokes() const { return m_drawing.strokes; }
    QPointF point() const { return m_drawing.point; }
    double heading() const { return m_drawing.heading; }
    bool running() const { return m_running; }
    const QString &message() const { return m_message; }
    void setMessage(const QString &message);
    double speed() const { return m_speed; }
    void setSpeed(double speed);
    int stepIndex() const { return m_stepIndex; }
    int stepTotal() const { return m_stepTotal; }
    const QString &currentCommand() const { return m_currentCommand; }
    const QList<Stroke> &plannedStrokes() const { return m_plannedStrokes; }
    bool pen() const { return m_drawing.pen; }
    const QString &color() const { return m_drawing.color; }
    double width() const { return m_drawing.width; }
    const QString &queuedSource() const { return m_queuedSource; }
    const QString &drawingSource() const { return m_drawingSource; }
    QStringList names() const { return m_names; }

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
    void finish();

    // Names
    static QString cleanTurtleName(const QString &text);
    Q_INVOKABLE QString displayName(int index) const;
    QString turtleName() const;

signals:
    void codeChanged();
    void turtleChanged();
    void turtleNamesChanged();
    void strokesChanged();
    void pointChanged();
    void headingChanged();
    void runningChanged();
    void messageChanged();
    void speedChanged();
    void stepIndexChanged();
    void stepTotalChanged();
    void currentCommandChanged();
    void plannedStrokesChanged();
    void turtleNameChanged();
    // A drawing has been carried out to its last instruction and judged.
    void drawingFinished();

private:
    void setRunning(bool running);
    void setStepIndex(int index);
    void setStepTotal(int total);
    void setCurrentCommand(const QString &command);
    void setPlannedStrokes(const QList<Stroke> &strokes);
    // Emits for every observed turtle field that changed since these readings.
    void publishDrawing(QPointF point, double heading, qsizetype strokeCount);
    void advanceRun();

    QString m_code;
    int m_turtle = 0;
    QMap<QString, QString> m_turtleNames;
    // strokes, point and heading (observed) and pen, colour and width (plain) live together.
    Turtle m_drawing;
    bool m_running = false;
    QString m_message = QStringLiteral("Ready when you are.");
    double m_speed = defaultSpeed;
    int m_stepIndex = 0;
    int m_stepTotal = 0;
    QString m_currentCommand;
    QList<Stroke> m_plannedStrokes;
    // The pacing of an animated run: the run's number while one is in progress.
    std::optional<quint64> m_task;
    quint64 m_runs = 0;
    QTimer m_pause;
    QList<Instruction> m_queue;
    QString m_queuedSource;
    QString m_drawingSource;
    const QStringList m_names{QStringLiteral("Clover"), QStringLiteral("Peaches"), QStringLiteral("Orbit"),
                              QStringLiteral("Your Majesty")};
};
