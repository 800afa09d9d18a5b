#include "curriculum/Missions.h"

namespace {

QList<Mission> laterMissions()
{
    return {
        // Shape City
        lesson(QStringLiteral("Rectangle remix"),
               QStringLiteral("Two pairs of sides"),
               QStringLiteral("Draw a rectangle: up 120, right 70, down 120, left 70. Turn right at every corner."),
               QStringLiteral("; Two long sides, two short sides\n"),
               QStringLiteral("Repeat a pair of different sides twice. Each corner turns 90 degrees."),
               QStringLiteral("repeat 2 [forward 120 right 90 forward 70 right 90]"),
               QStringLiteral("Rectangle Ranger")),
        lesson(QStringLiteral("Diamond delivery"),
               QStringLiteral("Tilt a square"),
               QStringLiteral("Turn right 45 degrees, then draw a square with 90-step sides, turning right at "
                              "every corner."),
               QStringLiteral("right 45\n"),
               QStringLiteral("Your first turn tilts the whole shape. The square's corners are still 90 degrees."),
               QStringLiteral("right 45 repeat 4 [forward 90 right 90]"),
               QStringLiteral("Diamond Finder")),
        lesson(QStringLiteral("Pentagon party"),
               QStringLiteral("Five equal sides"),
               QStringLiteral("Use a loop to draw a five-sided shape. Start up. Each side is 80 steps; turn right "
                              "72 degrees."),
               QStringLiteral("repeat 5 [\n\n]"),
               QStringLiteral("360 divided by 5 is 72. That's the turn, not the angle inside the shape."),
               QStringLiteral("repeat 5 [forward 80 right 72]"),
               QStringLiteral("Five-Side Friend")),
        lesson(QStringLiteral("Honeycomb hero"),
               QStringLiteral("Six sweet sides"),
               QStringLiteral("Draw a hexagon with a loop: six 65-step sides, starting up, turning right 60 "
                              "degrees."),
               QStringLiteral("; Six corners make a full turn\n"),
               QStringLiteral("A full turn is 360 degrees. Six turns of 60 make 360."),
               QStringLiteral("repeat 6 [forward 65 right 60]"),
               QStringLiteral("Honeycomb Hero")),
        lesson(QStringLiteral("Octagon orbit"),
               QStringLiteral("Eight is great"),
               QStringLiteral("Draw an octagon with a loop: eight 50-step sides, starting up, turning right 45 "
                              "degrees."),
               QStringLiteral("repeat 8 [\n\n]"),
               QStringLiteral("Each side needs FORWARD 50, then RIGHT 45."),
               QStringLiteral("repeat 8 [forward 50 right 45]"),
               QStringLiteral("Orbit Architect")),
        lesson(QStringLiteral("Round and round"),
               QStringLiteral("A circle made of lines"),
               QStringLiteral("Make a near-circle from 36 tiny sides: move 10 steps and turn right 10 degrees in a "
                              "loop."),
               QStringLiteral("; Tiny turns look like a curve\n"),
               QStringLiteral("36 turns of 10 degrees bring your turtle all the way around."),
               QStringLiteral("repeat 36 [forward 10 right 10]"),
               QStringLiteral("Circle Scout")),

        // Pen Playground
        lesson(QStringLiteral("Mind the gap"),
               QStringLiteral("Lift your pen"),
               QStringLiteral("Draw up 50 steps, skip 40 steps without drawing, then draw up 50 more."),
               QStringLiteral("forward 50\n"),
               QStringLiteral("PENUP lets your turtle move without a line. PENDOWN starts drawing again."),
               QStringLiteral("forward 50 penup forward 40 pendown forward 50"),
               QStringLiteral("Gap Jumper")),
        lesson(QStringLiteral("Dash dash dash"),
               QStringLiteral("Repeat a pen trick"),
               QStringLiteral("Draw four upward dashes, each 25 steps long with 20-step gaps. Use a loop."),
               QStringLiteral("repeat 4 [\n\n]"),
               QStringLiteral("Inside the loop: draw 25, lift the pen, move 20, put the pen down."),
               QStringLiteral("repeat 4 [forward 25 penup forward 20 pendown]"),
               QStringLiteral("Dash Designer")),
        lesson(QStringLiteral("Side by side"),
               QStringLiteral("Two separate squares"),
               QStringLiteral("Draw a 60-step square turning right. With the pen up, move 100 steps right from the "
                              "starting point. Face up and draw another 60-step square."),
               QStringLiteral("repeat 4 [forward 60 right 90]\n"),
               QStringLiteral("After a full square you're facing up again. Lift the pen before moving between "
                              "squares."),
               QStringLiteral("repeat 4 [forward 60 right 90] penup right 90 forward 100 left 90 pendown repeat 4 "
                              "[forward 60 right 90]"),
               QStringLiteral("Twin Builder")),
        lesson(QStringLiteral("Bold moves"),
               QStringLiteral("Choose your line weight"),
               QStringLiteral("Draw up 100 steps with WIDTH 10, turn right 90, then draw 100 with WIDTH 2."),
               QStringLiteral("width 10\n"),
               QStringLiteral("WIDTH changes how thick the next lines are. Change it before drawing the second "
                              "line."),
               QStringLiteral("width 10 forward 100 right 90 width 2 forward 100"),
               QStringLiteral("Bold Thinker")),
        lesson(QStringLiteral("Rainbow staircase"),
               QStringLiteral("Climb in color"),
               QStringLiteral("Draw three up-and-right steps, 40 steps per line. Make the first pair pink, the "
                              "second blue, and the third green."),
               QStringLiteral("color pink\n"),
               QStringLiteral("Each stair is FORWARD 40 RIGHT 90 FORWARD 40 LEFT 90. Change color between stairs."),
               QStringLiteral("color pink forward 40 right 90 forward 40 left 90 color blue forward 40 right 90 "
                              "forward 40 left 90 color green forward 40 right 90 forward 40 left 90"),
               QStringLiteral("Rainbow Climber")),
        lesson(QStringLiteral("Compass rose"),
               QStringLiteral("Find your way home"),
               QStringLiteral("Make four spokes from the start, each 80 steps: up, right, down, left. Draw "
                              "outward; lift the pen to go HOME between spokes."),
               QStringLiteral("forward 80\npenup\nhome\npendown\n"),
               QStringLiteral("HOME returns to the start and faces up. Use SETHEADING 90, 180, or 270 to choose "
                              "the next direction."),
               QStringLiteral("forward 80 penup home pendown setheading 90 forward 80 penup home pendown "
                              "setheading 180 forward 80 penup home pendown setheading 270 forward 80"),
               QStringLiteral("Compass Captain")),

        // Pattern Planet
        lesson(QStringLiteral("Stairway to space"),
               QStringLiteral("A loop inside an idea"),
               QStringLiteral("Use one loop to make five up-and-right stairs, with 30-step lines."),
               QStringLiteral("repeat 5 [\n\n]"),
               QStringLiteral("A stair ends facing up: move, right turn, move, left turn."),
               QStringLiteral("repeat 5 [forward 30 right 90 forward 30 left 90]"),
               QStringLiteral("Space Stepper")),
        lesson(QStringLiteral("Square bouquet"),
               QStringLiteral("Loops inside loops"),
               QStringLiteral("Make six 70-step squares from the same starting point. After each complete "
                              "right-turning square, turn right 60 degrees."),
               QStringLiteral("repeat 6 [\n  repeat 4 [\n\n  ]\n  right 60\n]"),
               QStringLiteral("The inner loop makes a square. The outer loop turns and makes the next square."),
               QStringLiteral("repeat 6 [repeat 4 [forward 70 right 90] right 60]"),
               QStringLiteral("Bouquet Builder")),
        lesson(QStringLiteral("Triangle bloom"),
               QStringLiteral("A flower of triangles"),
               QStringLiteral("Make six triangles from the start, each with 90-step sides and right turns of 120. "
                              "Turn right 60 after each triangle."),
               QStringLiteral("repeat 6 [\n\n]"),
               QStringLiteral("Put a three-step triangle loop inside the six-step flower loop."),
               QStringLiteral("repeat 6 [repeat 3 [forward 90 right 120] right 60]"),
               QStringLiteral("Bloom Coder")),
        lesson(QStringLiteral("Star constellation"),
               QStringLiteral("Three separated stars"),
               QStringLiteral("Draw three stars in a row. Each uses five 65-step strokes and right turns of 144. "
                              "Between stars, lift the pen, move right 100, then face up."),
               QStringLiteral("repeat 3 [\n\n]"),
               QStringLiteral("Draw a star with an inner loop. PENUP RIGHT 90 FORWARD 100 LEFT 90 PENDOWN sets up "
                              "the next one."),
               QStringLiteral("repeat 3 [repeat 5 [forward 65 right 144] penup right 90 forward 100 left 90 "
                              "pendown]"),
               QStringLiteral("Constellation Keeper")),
        lesson(QStringLiteral("Pinwheel parade"),
               QStringLiteral("Eight little flags"),
               QStringLiteral("Draw eight triangles from the start, using 60-step sides and right turns of 120. "
                              "Rotate right 45 after each triangle."),
               QStringLiteral("; Eight turns of 45 make 360\n"),
               QStringLiteral("Reuse your triangle flower idea, changing the outer repeat count and the turn."),
               QStringLiteral("repeat 8 [repeat 3 [forward 60 right 120] right 45]"),
               QStringLiteral("Pinwheel Pilot")),
        lesson(QStringLiteral("Double orbit"),
               QStringLiteral("Two circles, one start"),
               QStringLiteral("Use nested loops to draw two near-circles from the start. Each has 36 sides of 8 "
                              "steps and right turns of 10. Turn right 180 between circles."),
               QStringLiteral("repeat 2 [\n\n]"),
               QStringLiteral("The circle is your inner loop. The 180-degree turn sends the second circle the "
                              "other way."),
               QStringLiteral("repeat 2 [repeat 36 [forward 8 right 10] right 180]"),
               QStringLiteral("Double Orbit")),

        // Maker Mountain
        lesson(QStringLiteral("Teach a trick"),
               QStringLiteral("Name your own command"),
               QStringLiteral("Define a command named SQUARE that draws a 75-step square with right turns. Call "
                              "SQUARE once to draw it."),
               QStringLiteral("to square\n\nend\n\nsquare"),
               QStringLiteral("TO square starts the recipe. END finishes it. Typing square afterward runs the "
                              "recipe."),
               QStringLiteral("to square repeat 4 [forward 75 right 90] end square"),
               QStringLiteral("Turtle Teacher")),
        lesson(QStringLiteral("Trick times two"),
               QStringLiteral("Reuse your recipe"),
               QStringLiteral("Define SQUARE with 60-step sides and right turns. Call it twice, moving 100 steps "
                              "right with the pen up between calls."),
               QStringLiteral("to square\n  repeat 4 [forward 60 right 90]\nend\n\nsquare\n"),
               QStringLiteral("Your named command works just like FORWARD. Call it again after moving to the next "
                              "spot."),
               QStringLiteral("to square repeat 4 [forward 60 right 90] end square penup right 90 forward 100 left "
                              "90 pendown square"),
               QStringLiteral("Recipe Reuser")),
        lesson(QStringLiteral("A star is born"),
               QStringLiteral("Make a star command"),
               QStringLiteral("Define STAR to draw five 100-step strokes with right turns of 144. Set COLOR orange "
                              "and call STAR."),
               QStringLiteral("to star\n\nend\n\ncolor orange\nstar"),
               QStringLiteral("Put the five-step REPEAT loop inside the STAR recipe."),
               QStringLiteral("to star repeat 5 [forward 100 right 144] end color orange star"),
               QStringLiteral("Star Chef")),
        lesson(QStringLiteral("Flower factory"),
               QStringLiteral("Recipes meet loops"),
               QStringLiteral("Define PETAL as a triangle with 80-step sides and right turns of 120. Use a loop to "
                              "call PETAL six times, turning right 60 between calls."),
               QStringLiteral("to petal\n\nend\n\nrepeat 6 [petal right 60]"),
               QStringLiteral("A procedure can hold a loop, and another loop can use the procedure."),
               QStringLiteral("to petal repeat 3 [forward 80 right 120] end repeat 6 [petal right 60]"),
               QStringLiteral("Flower Founder")),
        lesson(QStringLiteral("Build a bigger trick"),
               QStringLiteral("Recipes inside recipes"),
               QStringLiteral("Define SQUARE with 50-step sides. Define PAIR to draw SQUARE, jump right 80 steps, "
                              "face up, and draw SQUARE again. Call PAIR."),
               QStringLiteral("to square\n  repeat 4 [forward 50 right 90]\nend\n\nto pair\n\nend\n\npair"),
               QStringLiteral("PAIR can use SQUARE twice. Keep the pen up during the jump between squares."),
               QStringLiteral("to square repeat 4 [forward 50 right 90] end to pair square penup right 90 forward "
                              "80 left 90 pendown square end pair"),
               QStringLiteral("Recipe Architect")),
        lesson(QStringLiteral("Marble Cove master"),
               QStringLiteral("Your grand finale"),
               QStringLiteral("Define STAR with five 110-step strokes and right turns of 144. In purple, loop six "
                              "calls to STAR, turning right 60 after each."),
               QStringLiteral("to star\n\nend\n\ncolor purple\nrepeat 6 [star right 60]"),
               QStringLiteral("Combine everything: a star recipe, a color, and a loop that turns between stars."),
               QStringLiteral("to star repeat 5 [forward 110 right 144] end color purple repeat 6 [star right 60]"),
               QStringLiteral("Marble Cove Master")),
    };
}

} // namespace

const QList<Mission> &missions()
{
    static const QList<Mission> table = firstMissions() + laterMissions();
    return table;
}
