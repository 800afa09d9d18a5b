#include "language/SourceLinks.h"

#include <algorithm>
#include <utility>

namespace {

std::pair<int, int> startOf(SourcePlace place)
{
    return {place.line, place.column};
}

std::pair<int, int> endOf(SourcePlace place)
{
    return {place.line, place.column + place.length};
}

// The token that closes the one at `open` ("[" or "to"), or the last token when nothing does.
qsizetype closing(const QStringList &tokens, qsizetype open)
{
    if (tokens.at(open) == u"to") {
        const auto end = std::find(tokens.cbegin() + open, tokens.cend(), QStringLiteral("end"));
        return end == tokens.cend() ? tokens.size() - 1 : end - tokens.cbegin();
    }
    int depth = 0;
    for (qsizetype k = open; k < tokens.size(); ++k) {
        if (tokens.at(k) == u"[")
            ++depth;
        else if (tokens.at(k) == u"]" && --depth == 0)
            return k;
    }
    return tokens.size() - 1;
}

// The token at a cursor on (line, column), the cursor touching it from either side; -1 for none.
qsizetype tokenAt(const QList<SourcePlace> &places, int line, int column)
{
    const std::pair<int, int> cursor{line, column};
    // Places are in text order; the first token ending at or after the cursor is the candidate.
    const auto found = std::lower_bound(places.cbegin(), places.cend(), cursor,
                                        [](SourcePlace place, std::pair<int, int> at) { return endOf(place) < at; });
    if (found == places.cend() || startOf(*found) > cursor)
        return -1;
    return found - places.cbegin();
}

} // namespace

QList<qsizetype> instructionsMadeAt(const QStringList &tokens, const QList<SourcePlace> &places,
                                   const QList<Instruction> &instructions, int line, int column)
{
    const qsizetype at = tokenAt(places, line, column);
    if (at < 0)
        return {};
    qsizetype first = at;
    qsizetype last = at;
    const QString &token = tokens.at(at);
    if (token == u"repeat" && at + 2 < tokens.size() && tokens.at(at + 2) == u"[") {
        last = closing(tokens, at + 2);
    } else if (token == u"to" || (at > 0 && tokens.at(at - 1) == u"to")) {
        first = token == u"to" ? at : at - 1;
        last = closing(tokens, first);
    }
    const std::pair<int, int> from = startOf(places.at(first));
    const std::pair<int, int> to = endOf(places.at(last));
    const auto inside = [&](const Instruction &instruction) {
        const SourcePlace place = instruction.place;
        return (place.isValid() && startOf(place) >= from && endOf(place) <= to)
            || (instruction.callToken >= first && instruction.callToken <= last);
    };
    QList<qsizetype> made;
    for (qsizetype k = 0; k < instructions.size(); ++k) {
        if (inside(instructions.at(k)))
            made.append(k);
    }
    return made;
}
