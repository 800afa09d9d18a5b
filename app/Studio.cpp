#include "app/Studio.h"

Studio::Studio(QObject *parent)
    : QObject(parent)
    , m_pause(this)
{
    m_pause.setObjectName(QStringLiteral("runPause"));
    m_pause.setSingleShot(true);
    m_pause.setTimerType(Qt::PreciseTimer);
    connect(&m_pause, &QTimer::timeout, this, &Studio::advanceRun);
}

void Studio::setCode(const QString &code)
{
    if (m_code == code)
        return;
    m_code = code;
    emit codeChanged();
}

void Studio::setTurtle(int turtle)
{
    if (m_turtle == turtle)
        return;
    const QString shownName = turtleName();
    m_turtle = turtle;
    emit turtleChanged();
    if (turtleName() != shownName)
        emit turtleNameChanged();
}

void Studio::setTurtleNames(const QMap<QString, QString> &names)
{
    if (m_turtleNames == names)
        return;
    const QString shownName = turtleName();
    m_turtleNames = names;
    emit turtleNamesChanged();
    if (turtleName() != shownName)
        emit turtleNameChanged();
}

void Studio::setMessage(const QString &message)
{
    if (m_message == message)
        return;
    m_message = message;
    emit messageChanged();
}

void Studio::setSpeed(double speed)
{
    speed = qBound(fastestSpeed, speed, slowestSpeed);
    if (m_speed == speed)
        return;
    m_speed = speed;
    emit speedChanged();
}

void Studio::setRunning(bool running)
{
    if (m_running == running)
        return;
    m_running = running;
    emit runningChanged();
}

void Studio::setStepIndex(int index)
{
    if (m_stepIndex == index)
        return;
    m_stepIndex = index;
    emit stepIndexChanged();
}

void Studio::setStepTotal(int total)
{
    if (m_stepTotal == total)
        return;
    m_stepTotal = total;
    emit stepTotalChanged();
}

void Studio::setCurrentCommand(const QString &command)
{
    if (m_currentCommand == command)
        return;
    m_currentCommand = command;
    emit currentCommandChanged();
}

void Studio::setPlannedStrokes(const QList<Stroke> &strokes)
{
    if (m_plannedStrokes.isEmpty() && strokes.isEmpty())
        return;
    m_plannedStrokes = strokes;
    emit plannedStrokesChanged();
}

void Studio::finish()
{
    m_drawingSource = m_queuedSource;
    emit drawingFinished();
}
