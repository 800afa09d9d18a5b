#include "app/Studio.h"

#include "language/LogoError.h"
#include "language/LogoParser.h"
#include "turtle/CommandLabel.h"

#include <algorithm>
#include <chrono>

bool Studio::prepare()
{
    QList<Instruction> instructions;
    LogoParser parser(m_code);
    try {
        instructions = parser.parse();
    } catch (const LogoError &error) {
        tellError(error.errorDescription(), error.place());
        return false;
    }
    if (instructions.isEmpty()) {
        setMessage(QStringLiteral("Add a command first. Try FORWARD 100."));
        return false;
    }
    reset();
    m_queue = instructions;
    m_queuedSource = m_code;
    m_queuedTokens = parser.tokens;
    m_queuedPlaces = parser.places;
    setStepTotal(int(instructions.size()));
    setPlannedStrokes(drawing(instructions));
    return true;
}

void Studio::executeNext()
{
    if (m_stepIndex >= m_queue.size())
        return;
    const Instruction instruction = m_queue.at(m_stepIndex);
    setCurrentCommand(commandLabel(instruction));
    apply(instruction);
    noteStrokeSources(m_stepIndex);
    setStepIndex(m_stepIndex + 1);
}

void Studio::step()
{
    stop();
    if (m_queuedSource != m_code || m_stepIndex >= m_queue.size()) {
        if (!prepare())
            return;
    }
    executeNext();
    setMessage(QStringLiteral("Step ") + QString::number(m_stepIndex) + QStringLiteral(" of ")
               + QString::number(m_stepTotal) + QStringLiteral(": ") + m_currentCommand);
    if (m_stepIndex == m_queue.size())
        finish();
}

void Studio::run()
{
    stop();
    if (!prepare())
        return;
    setRunning(true);
    setMessage(turtleName() + QStringLiteral(" is following your code…"));
    m_task = ++m_runs;
    m_runClock.start();
    m_nextDue = 0;
    advanceRun();
}

// The run keeps time by the clock, not by beats: each wake-up carries out every instruction whose
// moment has come, so a window slow to draw never slows the drawing down, then sleeps until the
// next one is due. Instruction k is due one pause (`speed`, read afresh each time) after k - 1.
void Studio::advanceRun()
{
    if (!m_task)
        return;
    const quint64 thisRun = *m_task;
    while (m_runClock.nsecsElapsed() >= m_nextDue) {
        if (m_stepIndex >= m_queue.size()) {
            m_task.reset();
            setRunning(false);
            finish();
            return;
        }
        executeNext();
        // Something reacting to the new stroke may have stopped or restarted the run.
        if (m_task != thisRun)
            return;
        m_nextDue += qRound64(m_speed * 1e9);
    }
    const qint64 wait = m_nextDue - m_runClock.nsecsElapsed();
    m_pause.start(std::chrono::milliseconds(std::max<qint64>(0, (wait + 999999) / 1000000)));
}

void Studio::stop()
{
    m_pause.stop();
    m_task.reset();
    setRunning(false);
    setDifference({});
}

void Studio::reset()
{
    setDifference({});
    resetDrawing();
    m_queue.clear();
    m_queuedSource.clear();
    m_queuedTokens.clear();
    m_queuedPlaces.clear();
    setDrawingSource(QString());
    setCurrentCommand(QString());
    setStepIndex(0);
    setStepTotal(0);
    setPlannedStrokes({});
}
