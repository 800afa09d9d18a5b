#include "app/Studio.h"

void Studio::apply(const Instruction &instruction)
{
    const QPointF point = m_drawing.point;
    const double heading = m_drawing.heading;
    const qsizetype strokeCount = m_drawing.strokes.size();
    m_drawing.apply(instruction);
    publishDrawing(point, heading, strokeCount);
}

void Studio::resetDrawing()
{
    const QPointF point = m_drawing.point;
    const double heading = m_drawing.heading;
    const qsizetype strokeCount = m_drawing.strokes.size();
    m_drawing.reset();
    m_strokeSources.clear();
    publishDrawing(point, heading, strokeCount);
}

QList<Stroke> Studio::simulate(const QString &source) const
{
    return ::simulate(source);
}

// Strokes are only ever appended or wiped, so a changed count is a changed list.
void Studio::publishDrawing(QPointF point, double heading, qsizetype strokeCount)
{
    if (m_drawing.strokes.size() != strokeCount)
        emit strokesChanged();
    if (m_drawing.point.x() != point.x() || m_drawing.point.y() != point.y())
        emit pointChanged();
    if (m_drawing.heading != heading)
        emit headingChanged();
}
