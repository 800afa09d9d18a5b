#include "app/Studio.h"

#include "language/SourceLinks.h"

namespace {

QVariantMap placeMap(SourcePlace place)
{
    if (!place.isValid())
        return {};
    return {{QStringLiteral("line"), place.line},
            {QStringLiteral("column"), place.column},
            {QStringLiteral("length"), place.length}};
}

} // namespace

QVariantMap Studio::runPlace() const
{
    const bool underway = m_running || m_stepIndex < m_queue.size();
    if (m_stepIndex <= 0 || m_stepIndex > m_queue.size() || !underway || m_queuedSource != m_code)
        return {};
    const Instruction &instruction = m_queue.at(m_stepIndex - 1);
    QVariantMap place = placeMap(instruction.place);
    if (instruction.callToken >= 0) {
        const SourcePlace call = m_queuedPlaces.at(instruction.callToken);
        place.insert(QStringLiteral("callLine"), call.line);
        place.insert(QStringLiteral("callColumn"), call.column);
        place.insert(QStringLiteral("callLength"), call.length);
    }
    return place;
}

void Studio::setErrorPlace(SourcePlace place)
{
    const QVariantMap map = placeMap(place);
    if (m_errorPlace == map)
        return;
    m_errorPlace = map;
    emit errorPlaceChanged();
}

void Studio::tellError(const QString &message, SourcePlace place)
{
    const QString spoken = place.isValid() ? QStringLiteral("Line ") + QString::number(place.line + 1) + QStringLiteral(": ") + message
                                           : message;
    const bool changed = m_message != message || m_spokenMessage != spoken;
    // Both are in place before anyone hears of either, so nothing half-updated is read out.
    m_message = message;
    m_spokenMessage = spoken;
    setErrorPlace(place);
    if (changed)
        emit messageChanged();
}

void Studio::setDifference(const MissionDifference &difference)
{
    if (m_difference.sentence.isEmpty() && difference.sentence.isEmpty())
        return;
    m_difference = difference;
    m_showDifference = false;
    emit differenceChanged();
}

void Studio::setShowDifference(bool shown)
{
    shown = shown && !m_difference.sentence.isEmpty();
    if (m_showDifference == shown)
        return;
    m_showDifference = shown;
    emit differenceChanged();
}

void Studio::noteStrokeSources(int instruction)
{
    m_strokeSources.resize(m_drawing.strokes.size(), instruction);
}

QVariantMap Studio::strokePlace(int stroke) const
{
    if (stroke < 0 || stroke >= m_strokeSources.size() || m_queuedSource != m_code)
        return {};
    const int instruction = m_strokeSources.at(stroke);
    return instruction < m_queue.size() ? placeMap(m_queue.at(instruction).place) : QVariantMap();
}

QList<int> Studio::strokesMadeAt(int line, int column) const
{
    if (m_queuedSource != m_code || m_strokeSources.isEmpty())
        return {};
    const QList<qsizetype> made = instructionsMadeAt(m_queuedTokens, m_queuedPlaces, m_queue, line, column);
    QList<int> strokes;
    for (int k = 0; k < m_strokeSources.size(); ++k) {
        if (std::binary_search(made.cbegin(), made.cend(), qsizetype(m_strokeSources.at(k))))
            strokes.append(k);
    }
    return strokes;
}
