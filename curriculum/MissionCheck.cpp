#include "curriculum/MissionCheck.h"

#include "curriculum/Missions.h"
#include "language/LogoError.h"
#include "language/LogoParser.h"
#include "turtle/Turtle.h"

#include <QLineF>
#include <QSet>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>
#include <optional>

namespace {

constexpr double lengthTolerance = 0.5;
constexpr double jointTolerance = 1.0;
constexpr double angleTolerance = 0.5;
constexpr double pointTolerance = 0.5;
constexpr double widthTolerance = 0.1;

// Decimals land a hair off in binary (10.1 - 10 is just under 0.1), so without this slack a
// difference a child sees as equal to its tolerance could still pass.
constexpr double slack = 1e-9;

bool within(double difference, double tolerance)
{
    return std::abs(difference) < tolerance - slack;
}

double distance(QPointF a, QPointF b)
{
    return QLineF(a, b).length();
}

bool near(QPointF a, QPointF b, double tolerance)
{
    return within(distance(a, b), tolerance);
}

double turnBetween(const Stroke &first, const Stroke &second)
{
    const QPointF u = first.to - first.from;
    const QPointF v = second.to - second.from;
    const double lengths = std::hypot(u.x(), u.y()) * std::hypot(v.x(), v.y());
    double c = (u.x() * v.x() + u.y() * v.y()) / lengths;
    // A zero-length stroke has no direction; it counts as going straight on.
    if (!std::isfinite(c))
        c = 1;
    return std::acos(std::clamp(c, -1.0, 1.0)) * 180 / std::numbers::pi;
}

enum class Joins { None, Continuous, Closed };

// The first world is judged by shape alone, wherever and whichever way it was drawn.
struct ShapeRule
{
    qsizetype count;
    double length;
    Joins joins;
    std::optional<double> turn;
    bool loop;
    bool twoColours;
};

const ShapeRule shapeRules[] = {
    {1, 100, Joins::None, std::nullopt, false, false},
    {2, 100, Joins::Continuous, 90, false, false},
    {4, 100, Joins::Closed, 90, false, false},
    {3, 100, Joins::Closed, 120, true, false},
    {4, 100, Joins::Closed, 90, false, true},
    {5, 150, Joins::Closed, 144, true, false},
};

QString countWord(qsizetype count)
{
    static const char *const words[] = {"No", "One", "Two", "Three", "Four", "Five"};
    return count < qsizetype(std::size(words)) ? QString::fromLatin1(words[count]) : QString::number(count);
}

// The sentence for a drawing with the wrong number of lines.
QString countSentence(qsizetype drawn, qsizetype wanted)
{
    if (drawn == 0)
        return QStringLiteral("Your turtle has not drawn a line yet.");
    const qsizetype gap = std::abs(wanted - drawn);
    if (drawn < wanted)
        return gap == 1 ? QStringLiteral("One line is missing.") : countWord(gap) + QStringLiteral(" lines are missing.");
    return gap == 1 ? QStringLiteral("There is one line too many.")
                    : QStringLiteral("There are ") + countWord(gap).toLower() + QStringLiteral(" lines too many.");
}

QString degrees(double angle)
{
    return QString::number(angle) + QStringLiteral(" degrees");
}

MissionDifference shortOf(QString sentence, QList<Stroke> missing = {}, QList<Stroke> extra = {})
{
    return {false, std::move(sentence), std::move(missing), std::move(extra)};
}

// The joins a closed or continuous drawing lacks, as the lines that would close them.
QList<Stroke> gaps(const QList<Stroke> &strokes, bool aroundTheEnd)
{
    QList<Stroke> lines;
    for (qsizetype k = 0; k + 1 < strokes.size(); ++k) {
        if (!near(strokes.at(k).to, strokes.at(k + 1).from, jointTolerance))
            lines.append(Stroke{strokes.at(k).to, strokes.at(k + 1).from, strokes.at(k).color, strokes.at(k).width});
    }
    if (aroundTheEnd && !strokes.isEmpty() && !near(strokes.constLast().to, strokes.constFirst().from, jointTolerance))
        lines.append(Stroke{strokes.constLast().to, strokes.constFirst().from, strokes.constLast().color,
                            strokes.constLast().width});
    return lines;
}

MissionDifference meetsShape(const ShapeRule &rule, const QList<Stroke> &strokes, const QString &source)
{
    if (strokes.size() != rule.count)
        return shortOf(countSentence(strokes.size(), rule.count));
    QList<Stroke> wrongLength;
    for (const Stroke &stroke : strokes) {
        if (!within(distance(stroke.from, stroke.to) - rule.length, lengthTolerance))
            wrongLength.append(stroke);
    }
    if (!wrongLength.isEmpty())
        return shortOf(QStringLiteral("Every line should be ") + QString::number(rule.length)
                           + QStringLiteral(" steps long."),
                       {}, wrongLength);
    if (rule.joins == Joins::Continuous && !closedContinuity(strokes))
        return shortOf(QStringLiteral("Start the second line where the first one ends."), gaps(strokes, false));
    if (rule.joins == Joins::Closed && !closed(strokes))
        return shortOf(QStringLiteral("This shape does not close yet."), gaps(strokes, true));
    if (rule.turn && !turns(strokes, *rule.turn)) {
        QList<Stroke> afterWrongTurn;
        for (qsizetype k = 0; k + 1 < strokes.size(); ++k) {
            if (!within(turnBetween(strokes.at(k), strokes.at(k + 1)) - *rule.turn, angleTolerance))
                afterWrongTurn.append(strokes.at(k + 1));
        }
        return shortOf(QStringLiteral("Every turn should be ") + degrees(*rule.turn) + u'.', {}, afterWrongTurn);
    }
    if (rule.twoColours) {
        QSet<QString> colours;
        for (const Stroke &stroke : strokes)
            colours.insert(stroke.color);
        if (colours.size() < 2)
            return shortOf(QStringLiteral("Use at least two pen colors."));
    }
    if (rule.loop && !usesLoop(source))
        return shortOf(QStringLiteral("This mission wants a REPEAT loop."));
    return {true, {}, {}, {}};
}

bool needsLoop(int mission)
{
    static const QSet<int> loopMissions{8, 9, 10, 11, 13, 18, 19, 20, 21, 22, 23, 27, 29};
    return loopMissions.contains(mission);
}

bool needsColours(int mission)
{
    return mission == 16 || mission == 26 || mission == 29;
}

bool needsWidths(int mission)
{
    return mission == 15;
}

// The recipes a mission asks for; the last one must be called outside every recipe.
QStringList requiredRecipes(int mission)
{
    switch (mission) {
    case 24:
    case 25:
        return {QStringLiteral("square")};
    case 26:
    case 29:
        return {QStringLiteral("star")};
    case 27:
        return {QStringLiteral("petal")};
    case 28:
        return {QStringLiteral("square"), QStringLiteral("pair")};
    default:
        return {};
    }
}

// The sentence when the recipes the mission asks for are not there or not used; empty when they are.
QString recipeShortfall(const QStringList &recipes, const QString &source)
{
    LogoParser parser(source);
    try {
        parser.parse();
    } catch (const LogoError &error) {
        return error.message();
    }
    for (const QString &name : recipes) {
        if (!parser.procedures.contains(name)) {
            const QString upper = name.toUpper();
            return QStringLiteral("Make a recipe called ") + upper + QStringLiteral(" with TO ") + upper
                + QStringLiteral(" … END.");
        }
    }
    if (!parser.executableTokens.contains(recipes.constLast()))
        return QStringLiteral("Use ") + recipes.constLast().toUpper()
            + QStringLiteral(" outside every recipe, so your turtle draws it.");
    return {};
}

// How the first line that is not the target's differs from it.
QString strokeSentence(const Stroke &drawn, const Stroke &wanted)
{
    if (!near(drawn.from, wanted.from, pointTolerance))
        return QStringLiteral("A line starts in a different place.");
    const double drawnLength = distance(drawn.from, drawn.to);
    const double wantedLength = distance(wanted.from, wanted.to);
    if (within(turnBetween(drawn, wanted), angleTolerance) || drawnLength == 0) {
        return drawnLength < wantedLength ? QStringLiteral("A line is too short.")
                                          : QStringLiteral("A line is too long.");
    }
    return QStringLiteral("Your turtle turned a different amount.");
}

// Stroke by stroke, in drawing order and direction: the same outline traced differently fails.
MissionDifference matchesTarget(int mission, const QList<Stroke> &strokes, const QList<Stroke> &target,
                                const QString &source)
{
    MissionDifference difference;
    QString firstStroke;
    for (qsizetype k = 0; k < std::max(strokes.size(), target.size()); ++k) {
        const bool drawn = k < strokes.size();
        const bool wanted = k < target.size();
        if (drawn && wanted && near(strokes.at(k).from, target.at(k).from, pointTolerance)
            && near(strokes.at(k).to, target.at(k).to, pointTolerance))
            continue;
        if (drawn && wanted && firstStroke.isEmpty())
            firstStroke = strokeSentence(strokes.at(k), target.at(k));
        if (wanted)
            difference.missing.append(target.at(k));
        if (drawn)
            difference.extra.append(strokes.at(k));
    }
    if (strokes.isEmpty() || strokes.size() != target.size()) {
        difference.sentence = countSentence(strokes.size(), target.size());
        return difference;
    }
    if (!firstStroke.isEmpty()) {
        difference.sentence = firstStroke;
        return difference;
    }
    if (needsLoop(mission) && !usesLoop(source))
        return shortOf(QStringLiteral("This mission wants a REPEAT loop."));
    const auto differing = [&](auto differs, const QString &sentence) {
        for (qsizetype k = 0; k < strokes.size(); ++k) {
            if (differs(strokes.at(k), target.at(k))) {
                difference.missing.append(target.at(k));
                difference.extra.append(strokes.at(k));
            }
        }
        difference.sentence = difference.extra.isEmpty() ? QString() : sentence;
        return !difference.extra.isEmpty();
    };
    if (needsColours(mission)
        && differing([](const Stroke &a, const Stroke &b) { return a.color != b.color; },
                     QStringLiteral("A line is the wrong color.")))
        return difference;
    if (needsWidths(mission)
        && differing([](const Stroke &a, const Stroke &b) { return !within(a.width - b.width, widthTolerance); },
                     QStringLiteral("A line is the wrong width.")))
        return difference;
    const QStringList recipes = requiredRecipes(mission);
    if (!recipes.isEmpty()) {
        if (QString sentence = recipeShortfall(recipes, source); !sentence.isEmpty())
            return shortOf(std::move(sentence));
    }
    return {true, {}, {}, {}};
}

} // namespace

bool closed(const QList<Stroke> &strokes)
{
    if (strokes.isEmpty())
        return false;
    if (!near(strokes.constFirst().from, strokes.constLast().to, jointTolerance))
        return false;
    for (qsizetype k = 0; k + 1 < strokes.size(); ++k) {
        if (!near(strokes.at(k).to, strokes.at(k + 1).from, jointTolerance))
            return false;
    }
    return true;
}

bool turns(const QList<Stroke> &strokes, double angle)
{
    for (qsizetype k = 0; k + 1 < strokes.size(); ++k) {
        if (!within(turnBetween(strokes.at(k), strokes.at(k + 1)) - angle, angleTolerance))
            return false;
    }
    return true;
}

bool closedContinuity(const QList<Stroke> &strokes)
{
    return strokes.size() == 2 && near(strokes.at(0).to, strokes.at(1).from, jointTolerance);
}

bool usesLoop(const QString &source)
{
    return LogoParser(source).tokens.contains(QStringLiteral("repeat"));
}

MissionDifference missionDifference(int mission, const QList<Stroke> &strokes, const QList<Stroke> &target,
                                    const QString &source)
{
    if (mission < 0 || mission >= missions().size())
        return {};
    if (mission < int(std::size(shapeRules)))
        return meetsShape(shapeRules[mission], strokes, source);
    return matchesTarget(mission, strokes, target, source);
}

bool missionPasses(int mission, const QList<Stroke> &strokes, const QList<Stroke> &target, const QString &source)
{
    return missionDifference(mission, strokes, target, source).met;
}

QList<Stroke> missionTarget(int mission)
{
    return simulate(missions().at(mission).solution);
}
