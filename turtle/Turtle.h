#pragma once

#include "language/Instruction.h"
#include "turtle/Stroke.h"

#include <QList>
#include <QPointF>
#include <QString>

// Where the turtle is, which way it faces, how its pen is set, and what it has drawn.
// Heading: degrees, 0 up, clockwise positive, never wrapped. y grows downward.
struct Turtle
{
    QList<Stroke> strokes;
    QPointF point;
    double heading = 0;
    bool pen = true;
    QString color = QStringLiteral("purple");
    double width = 4;

    void apply(const Instruction &instruction);
    // A fresh canvas and pen.
    void reset();
};

// The strokes these instructions draw from a fresh turtle.
QList<Stroke> drawing(const QList<Instruction> &instructions);

// The strokes a program draws from a fresh turtle; a program with an error draws nothing.
QList<Stroke> simulate(const QString &source);
