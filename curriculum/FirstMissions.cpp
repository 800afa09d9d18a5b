#include "curriculum/Missions.h"

const QList<Mission> &firstMissions()
{
    static const QList<Mission> table{
        {
            QStringLiteral("Baby steps"),
            QStringLiteral("Meet your turtle"),
            QStringLiteral("Draw a line 100 steps long. Your turtle starts facing up!"),
            QStringLiteral("; Let's make our first line!\n"),
            {QStringLiteral("FORWARD moves your turtle in the direction it faces."),
             QStringLiteral("Put a distance after the command: FORWARD 100.")},
            QStringLiteral("forward 100"),
            QStringLiteral("First Steps"),
        },
        {
            QStringLiteral("Take a turn"),
            QStringLiteral("Make an L"),
            QStringLiteral("Move 100 steps, turn right 90 degrees, then move 100 more. Make an L!"),
            QStringLiteral("forward 100\n"),
            {QStringLiteral("RIGHT turns your turtle without moving it."),
             QStringLiteral("A square corner is 90 degrees. Add RIGHT 90, then FORWARD 100.")},
            QStringLiteral("forward 100\nright 90\nforward 100"),
            QStringLiteral("Corner Explorer"),
        },
        {
            QStringLiteral("Square dance"),
            QStringLiteral("Close the loop"),
            QStringLiteral("Draw a square with four sides of 100 steps each."),
            QStringLiteral("forward 100\nright 90\n"),
            {QStringLiteral("A square has four equal sides and four right-angle turns."),
             QStringLiteral("Do FORWARD 100 and RIGHT 90 four times. You can type each pair.")},
            QStringLiteral("repeat 4 [forward 100 right 90]"),
            QStringLiteral("Shape Shifter"),
        },
        {
            QStringLiteral("Loop magic"),
            QStringLiteral("Less typing, more drawing"),
            QStringLiteral("Use REPEAT to draw a triangle with three sides of 100 steps."),
            QStringLiteral("repeat 3 [\n  forward 100\n  right \n]"),
            {QStringLiteral("A full turn is 360 degrees. Divide it by three corners."),
             QStringLiteral("Try REPEAT 3 [FORWARD 100 RIGHT 120].")},
            QStringLiteral("repeat 3 [forward 100 right 120]"),
            QStringLiteral("Loop Wizard"),
        },
        {
            QStringLiteral("Color pop"),
            QStringLiteral("Make it yours"),
            QStringLiteral("Draw a square with 100-step sides using at least two pen colors."),
            QStringLiteral("color pink\n"),
            {QStringLiteral("COLOR blue changes the color of the lines you draw next."),
             QStringLiteral("Draw two sides in pink, change to blue, and draw the other two sides.")},
            QStringLiteral("color pink\nrepeat 2 [forward 100 right 90]\ncolor blue\nrepeat 2 [forward 100 right "
                           "90]"),
            QStringLiteral("Color Creator"),
        },
        {
            QStringLiteral("Star power"),
            QStringLiteral("Your big finale"),
            QStringLiteral("Use a loop to draw a five-point star with five 150-step strokes. Turn 144 degrees at "
                           "each point."),
            QStringLiteral("color purple\nrepeat 5 [\n\n]"),
            {QStringLiteral("Each step in the loop needs a move and a turn."),
             QStringLiteral("Inside the brackets, put FORWARD 150 RIGHT 144.")},
            QStringLiteral("color purple\nrepeat 5 [forward 150 right 144]"),
            QStringLiteral("Superstar"),
        },
    };
    return table;
}
