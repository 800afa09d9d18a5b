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

} // namespace

qsizetype tokenAt(const LogoParser &parser, int line, int column)
{
    const std::pair<int, int> cursor{line, column};
    // Places are in text order; the first token ending at or after the cursor is the candidate.
    const auto found = std::lower_bound(parser.places.cbegin(), parser.places.cend(), cursor,
                                        [](SourcePlace place, std::pair<int, int> at) { return endOf(place) < at; });
    if (found == parser.places.cend() || startOf(*found) > cursor)
        return -1;
    return found - parser.places.cbegin();
}

QList<qsizetype> instructionsMadeAt(const LogoParser &parser, const QList<Instruction> &instructions, int line,
                                   int column)
{
    const qsizetype at = tokenAt(parser, line, column);
    if (at < 0)
        return {};
    qsizetype first = at;
    qsizetype last = at;
    const QString &token = parser.tokens.at(at);
    if (token == u"repeat" && at + 2 < parser.tokens.size() && parser.tokens.at(at + 2) == u"[") {
        last = closing(parser.tokens, at + 2);
    } else if (token == u"to" || (at > 0 && parser.tokens.at(at - 1) == u"to")) {
        first = token == u"to" ? at : at - 1;
        last = closing(parser.tokens, first);
    }
    const std::pair<int, int> from = startOf(parser.places.at(first));
    const std::pair<int, int> to = endOf(parser.places.at(last));
    const auto inside = [&](SourcePlace place) {
        return place.isValid() && startOf(place) >= from && endOf(place) <= to;
    };
    QList<qsizetype> made;
    for (qsizetype k = 0; k < instructions.size(); ++k) {
        if (inside(instructions.at(k).place) || inside(instructions.at(k).callSite))
            made.append(k);
    }
    return made;
}
