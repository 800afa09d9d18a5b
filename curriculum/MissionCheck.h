#pragma once

#include "turtle/Stroke.h"

#include <QList>
#include <QString>

// Every tolerance here is strict: a difference equal to the tolerance fails.

// Each stroke starts where the one before ended, and the last ends where the first began.
bool closed(const QList<Stroke> &strokes);

// Every pair of consecutive strokes meets at this angle, left or right alike.
bool turns(const QList<Stroke> &strokes, double angle);

// Exactly two strokes, the second starting where the first ended.
bool closedContinuity(const QList<Stroke> &strokes);

// The program says REPEAT somewhere outside its comments, recipes included.
bool usesLoop(const QString &source);

// What the check found: whether the mission is met and, when not, the first rule the drawing
// breaks, as one short sentence for the child, with the lines that make the difference.
struct MissionDifference
{
    bool met = false;
    QString sentence;
    QList<Stroke> missing;  // lines the mission wants that the drawing lacks
    QList<Stroke> extra;    // drawn lines that are not what the mission wants
};

// The check itself, telling what differs: the first failing rule in the order below.
MissionDifference missionDifference(int mission, const QList<Stroke> &strokes, const QList<Stroke> &target,
                                    const QString &source);

// Whether the strokes that `source` drew meet the mission. The first world judges the shape
// alone; later missions compare stroke by stroke with `target` and look at the code.
bool missionPasses(int mission, const QList<Stroke> &strokes, const QList<Stroke> &target, const QString &source);

// What the mission's solution draws from a fresh turtle.
QList<Stroke> missionTarget(int mission);
