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

bool meetsShape(const ShapeRule &rule, const QList<Stroke> &strokes, const QString &source)
{
    if (strokes.size() != rule.count)
        return false;
    for (const Stroke &stroke : strokes) {
        if (!within(distance(stroke.from, stroke.to) - rule.length, lengthTolerance))
            return false;
    }
    if (rule.joins == Joins::Continuous && !closedContinuity(strokes))
        return false;
    if (rule.joins == Joins::Closed && !closed(strokes))
        return false;
    if (rule.turn && !turns(strokes, *rule.turn))
        return false;
    if (rule.twoColours) {
        QSet<QString> colours;
        for (const Stroke &stroke : strokes)
            colours.insert(stroke.color);
        if (colours.size() < 2)
            return false;
    }
    return !rule.loop || usesLoop(source);
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

bool definesAndCalls(const QStringList &recipes, const QString &source)
{
    LogoParser parser(source);
    try {
        parser.parse();
    } catch (const LogoError &) {
        return false;
    }
    for (const QString &name : recipes) {
        if (!parser.procedures.contains(name))
            return false;
    }
    return parser.executableTokens.contains(recipes.constLast());
}

// Stroke by stroke, in drawing order and direction: the same outline traced differently fails.
bool matchesTarget(int mission, const QList<Stroke> &strokes, const QList<Stroke> &target, const QString &source)
{
    if (strokes.isEmpty() || strokes.size() != target.size())
        return false;
    for (qsizetype k = 0; k < strokes.size(); ++k) {
        if (!near(strokes.at(k).from, target.at(k).from, pointTolerance)
            || !near(strokes.at(k).to, target.at(k).to, pointTolerance))
            return false;
    }
    if (needsLoop(mission) && !usesLoop(source))
        return false;
    if (needsColours(mission)) {
        for (qsizetype k = 0; k < strokes.size(); ++k) {
            if (strokes.at(k).color != target.at(k).color)
                return false;
        }
    }
    if (needsWidths(mission)) {
        for (qsizetype k = 0; k < strokes.size(); ++k) {
            if (!within(strokes.at(k).width - target.at(k).width, widthTolerance))
                return false;
        }
    }
    const QStringList recipes = requiredRecipes(mission);
    return recipes.isEmpty() || definesAndCalls(recipes, source);
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

bool missionPasses(int mission, const QList<Stroke> &strokes, const QList<Stroke> &target, const QString &source)
{
    if (mission < 0 || mission >= missions().size())
        return false;
    if (mission < int(std::size(shapeRules)))
        return meetsShape(shapeRules[mission], strokes, source);
    return matchesTarget(mission, strokes, target, source);
}

QList<Stroke> missionTarget(int mission)
{
    return simulate(missions().at(mission).solution);
}
