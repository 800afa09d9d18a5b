#include "language/Instruction.h"
#include "language/LogoParser.h"
#include "turtle/Palette.h"
#include "turtle/Stroke.h"
#include "turtle/Turtle.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QTest>

#include <cmath>

namespace {

// Rounded to a millionth so that sin/cos noise and -0 do not matter.
QString coordinate(double value)
{
    double rounded = std::round(value * 1e6) / 1e6;
    if (rounded == 0)
        rounded = 0;
    return QString::number(rounded, 'g', 12);
}

QString point(QPointF p)
{
    return coordinate(p.x()) + u',' + coordinate(p.y());
}

// "x,y>x,y colour width"
QString render(const Stroke &stroke)
{
    return point(stroke.from) + u'>' + point(stroke.to) + u' ' + stroke.color + u' ' + coordinate(stroke.width);
}

QString render(const QList<Stroke> &strokes)
{
    QStringList parts;
    for (const Stroke &stroke : strokes)
        parts.append(render(stroke));
    return parts.join(QStringLiteral("; "));
}

QList<Instruction> instructionsOf(const QString &program)
{
    LogoParser parser(program);
    return parser.parse();
}

QJsonObject strokeObject(const QString &text)
{
    return QJsonDocument::fromJson(text.toUtf8()).object();
}

} // namespace

class TestTurtle : public QObject
{
    Q_OBJECT

private slots:
    void geometry_data();
    void geometry();
    void resetRestoresEverything();
    void unknownInstructionDoesNothing();
    void simulate_data();
    void simulate();
    void paletteNames();
    void namedColours_data();
    void namedColours();
    void paletteHues_data();
    void paletteHues();
    void strokeColorFallsBackToViolet_data();
    void strokeColorFallsBackToViolet();
    void strokeRoundTrip_data();
    void strokeRoundTrip();
    void strokeDecodes_data();
    void strokeDecodes();
    void strokeRefused_data();
    void strokeRefused();
};

void TestTurtle::geometry_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("strokes");
    QTest::addColumn<QString>("point");
    QTest::addColumn<double>("heading");
    QTest::addColumn<bool>("pen");

    QTest::newRow("nothing") << QString() << QString() << "0,0" << 0.0 << true;
    QTest::newRow("forward goes up") << "forward 100" << "0,0>0,-100 purple 4" << "0,-100" << 0.0 << true;
    QTest::newRow("turn then forward") << "forward 100 right 90 forward 50"
                                       << "0,0>0,-100 purple 4; 0,-100>50,-100 purple 4" << "50,-100" << 90.0 << true;
    QTest::newRow("back goes down") << "back 50" << "0,0>0,50 purple 4" << "0,50" << 0.0 << true;
    QTest::newRow("negative forward") << "forward -50" << "0,0>0,50 purple 4" << "0,50" << 0.0 << true;
    QTest::newRow("negative back") << "back -50" << "0,0>0,-50 purple 4" << "0,-50" << 0.0 << true;
    QTest::newRow("right is clockwise") << "right 90 forward 10" << "0,0>10,0 purple 4" << "10,0" << 90.0 << true;
    QTest::newRow("left is anticlockwise") << "left 90 forward 10" << "0,0>-10,0 purple 4" << "-10,0" << -90.0 << true;
    QTest::newRow("left negative") << "left -90 forward 10" << "0,0>10,0 purple 4" << "10,0" << 90.0 << true;
    QTest::newRow("right negative") << "right -90 forward 10" << "0,0>-10,0 purple 4" << "-10,0" << -90.0 << true;
    QTest::newRow("facing down") << "right 180 forward 10" << "0,0>0,10 purple 4" << "0,10" << 180.0 << true;
    QTest::newRow("back while facing right") << "right 90 back 10" << "0,0>-10,0 purple 4" << "-10,0" << 90.0 << true;
    QTest::newRow("diagonal") << "right 45 forward 10" << "0,0>7.071068,-7.071068 purple 4" << "7.071068,-7.071068"
                              << 45.0 << true;
    QTest::newRow("setheading 270") << "setheading 270 forward 10" << "0,0>-10,0 purple 4" << "-10,0" << 270.0 << true;
    QTest::newRow("setheading replaces") << "right 400 setheading 30 right 10" << QString() << "0,0" << 40.0 << true;
    QTest::newRow("setheading negative") << "setheading -45" << QString() << "0,0" << -45.0 << true;
    QTest::newRow("four right turns make 360") << "repeat 4 [ right 90 ]" << QString() << "0,0" << 360.0 << true;
    QTest::newRow("right 720 not wrapped") << "right 720" << QString() << "0,0" << 720.0 << true;
    QTest::newRow("left past zero stays negative") << "left 30 left 400" << QString() << "0,0" << -430.0 << true;
    QTest::newRow("square closes")
        << "repeat 4 [ forward 10 right 90 ]"
        << "0,0>0,-10 purple 4; 0,-10>10,-10 purple 4; 10,-10>10,0 purple 4; 10,0>0,0 purple 4" << "0,0" << 360.0 << true;

    // Moves of 0.001 or less leave no stroke but still move.
    QTest::newRow("forward 0") << "forward 0" << QString() << "0,0" << 0.0 << true;
    QTest::newRow("forward 0.001") << "forward 0.001" << QString() << "0,-0.001" << 0.0 << true;
    QTest::newRow("back 0.001") << "back 0.001" << QString() << "0,0.001" << 0.0 << true;
    QTest::newRow("forward -0.001") << "forward -0.001" << QString() << "0,0.001" << 0.0 << true;
    QTest::newRow("forward 0.0011") << "forward 0.0011" << "0,0>0,-0.0011 purple 4" << "0,-0.0011" << 0.0 << true;
    QTest::newRow("tiny moves add up without strokes") << "repeat 10 [ forward 0.001 ]" << QString() << "0,-0.01" << 0.0
                                                       << true;

    // Pen.
    QTest::newRow("pen up moves without drawing") << "penup forward 10" << QString() << "0,-10" << 0.0 << false;
    QTest::newRow("pen down draws nothing by itself") << "penup forward 10 pendown" << QString() << "0,-10" << 0.0 << true;
    QTest::newRow("pen down then draws") << "penup forward 10 pendown forward 10" << "0,-10>0,-20 purple 4" << "0,-20"
                                         << 0.0 << true;

    // Home.
    QTest::newRow("home draws back") << "forward 10 right 90 forward 10 home"
                                     << "0,0>0,-10 purple 4; 0,-10>10,-10 purple 4; 10,-10>0,0 purple 4" << "0,0" << 0.0
                                     << true;
    QTest::newRow("home from origin") << "right 90 home" << QString() << "0,0" << 0.0 << true;
    QTest::newRow("home after a tiny move") << "penup forward 0.001 pendown home" << QString() << "0,0" << 0.0 << true;
    QTest::newRow("home after a short move") << "penup right 90 forward 0.002 pendown home" << "0.002,0>0,0 purple 4"
                                             << "0,0" << 0.0 << true;
    QTest::newRow("home with pen up") << "penup forward 10 right 30 home" << QString() << "0,0" << 0.0 << false;
    QTest::newRow("home keeps colour and width") << "color red width 8 forward 10 home"
                                                 << "0,0>0,-10 red 8; 0,-10>0,0 red 8" << "0,0" << 0.0 << true;
    QTest::newRow("home after a turn only") << "forward 5 right 90 home forward 1"
                                            << "0,0>0,-5 purple 4; 0,-5>0,0 purple 4; 0,0>0,-1 purple 4" << "0,-1" << 0.0
                                            << true;

    // Colour and width.
    QTest::newRow("colour and width carried")
        << "color blue forward 10 width 2.5 forward 10 color black right 90 forward 5"
        << "0,0>0,-10 blue 4; 0,-10>0,-20 blue 2.5; 0,-20>5,-20 black 2.5" << "5,-20" << 90.0 << true;
    QTest::newRow("colour alias") << "setpc green setpensize 20 fd 1" << "0,0>0,-1 green 20" << "0,-1" << 0.0 << true;

    // Clear.
    QTest::newRow("clear resets pen") << "color red width 8 forward 10 clear forward 10" << "0,0>0,-10 purple 4"
                                      << "0,-10" << 0.0 << true;
    QTest::newRow("clear lowers the pen") << "penup clear forward 5" << "0,0>0,-5 purple 4" << "0,-5" << 0.0 << true;
    QTest::newRow("clear resets position") << "right 90 forward 10 clear" << QString() << "0,0" << 0.0 << true;
}

void TestTurtle::geometry()
{
    QFETCH(QString, program);
    QFETCH(QString, strokes);
    QFETCH(QString, point);
    QFETCH(double, heading);
    QFETCH(bool, pen);

    Turtle turtle;
    for (const Instruction &instruction : instructionsOf(program))
        turtle.apply(instruction);
    QCOMPARE(render(turtle.strokes), strokes);
    QCOMPARE(::point(turtle.point), point);
    QCOMPARE(turtle.heading, heading);
    QCOMPARE(turtle.pen, pen);

    // The same instructions from a fresh turtle, and the program simulated, draw the same.
    QCOMPARE(render(drawing(instructionsOf(program))), strokes);
    QCOMPARE(render(::simulate(program)), strokes);
}

void TestTurtle::resetRestoresEverything()
{
    Turtle turtle;
    for (const Instruction &instruction : instructionsOf("color red width 9 right 30 forward 20 penup"))
        turtle.apply(instruction);
    QCOMPARE(turtle.strokes.size(), 1);

    turtle.reset();
    QVERIFY(turtle.strokes.isEmpty());
    QCOMPARE(turtle.point, QPointF(0, 0));
    QCOMPARE(turtle.heading, 0.0);
    QCOMPARE(turtle.pen, true);
    QCOMPARE(turtle.color, QStringLiteral("purple"));
    QCOMPARE(turtle.width, 4.0);
}

void TestTurtle::unknownInstructionDoesNothing()
{
    Turtle turtle;
    for (const Instruction &instruction : instructionsOf("color red width 9 right 30 forward 20"))
        turtle.apply(instruction);
    const Turtle before = turtle;

    for (const QString &name : {QStringLiteral("jump"), QStringLiteral("fd"), QStringLiteral("repeat"), QString()})
        turtle.apply(Instruction{name, 50, QStringLiteral("blue")});
    QCOMPARE(turtle.strokes, before.strokes);
    QCOMPARE(turtle.point, before.point);
    QCOMPARE(turtle.heading, before.heading);
    QCOMPARE(turtle.pen, before.pen);
    QCOMPARE(turtle.color, before.color);
    QCOMPARE(turtle.width, before.width);
}

void TestTurtle::simulate_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("strokes");

    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("comments only") << "; nothing yet" << QString();
    QTest::newRow("recipe") << "to line fd 10 end line rt 90 line" << "0,0>0,-10 purple 4; 0,-10>10,-10 purple 4";
    QTest::newRow("unknown word after a move") << "fd 100 jump" << QString();
    QTest::newRow("range fault after a move") << "fd 100 rt 90 fd 10001" << QString();
    QTest::newRow("unclosed loop") << "fd 10 repeat 4 [ fd 10 rt 90" << QString();
    QTest::newRow("recursion") << "fd 10 to a a end a" << QString();
    QTest::newRow("too many steps") << QStringLiteral("fd 1 ").repeated(2001) << QString();
}

void TestTurtle::simulate()
{
    QFETCH(QString, program);
    QFETCH(QString, strokes);
    QCOMPARE(render(::simulate(program)), strokes);
}

void TestTurtle::paletteNames()
{
    const QStringList names = palette().keys();
    QCOMPARE(QSet<QString>(names.begin(), names.end()),
             QSet<QString>({"pink", "purple", "blue", "green", "orange", "yellow", "white", "black", "red"}));
    // The palette and the language agree on the names a program can choose.
    const QStringList colorNames = LogoParser::colorNames();
    QCOMPARE(QSet<QString>(names.begin(), names.end()), QSet<QString>(colorNames.begin(), colorNames.end()));

    // Nine names, nine different colours.
    QSet<QRgb> colours;
    for (const QColor &colour : palette())
        colours.insert(colour.rgba());
    QCOMPARE(colours.size(), 9);
}

void TestTurtle::namedColours_data()
{
    QTest::addColumn<QColor>("colour");
    QTest::addColumn<double>("red");
    QTest::addColumn<double>("green");
    QTest::addColumn<double>("blue");

    QTest::newRow("ink") << colors::ink << 0.13 << 0.16 << 0.25;
    QTest::newRow("violet") << colors::violet << 0.42 << 0.28 << 0.88;
    QTest::newRow("mint") << colors::mint << 0.78 << 0.95 << 0.86;
    QTest::newRow("black is ink") << palette().value("black") << 0.13 << 0.16 << 0.25;
    QTest::newRow("purple is violet") << palette().value("purple") << 0.42 << 0.28 << 0.88;
}

void TestTurtle::namedColours()
{
    QFETCH(QColor, colour);
    QFETCH(double, red);
    QFETCH(double, green);
    QFETCH(double, blue);
    QVERIFY(colour.isValid());
    QVERIFY(std::abs(colour.redF() - red) < 1e-3);
    QVERIFY(std::abs(colour.greenF() - green) < 1e-3);
    QVERIFY(std::abs(colour.blueF() - blue) < 1e-3);
    QCOMPARE(colour.alphaF(), 1.0);
}

void TestTurtle::paletteHues_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("minHue");
    QTest::addColumn<int>("maxHue");

    // Hue windows in degrees; red wraps around 0.
    QTest::newRow("red") << "red" << -10 << 12;
    QTest::newRow("orange") << "orange" << 20 << 45;
    QTest::newRow("yellow") << "yellow" << 46 << 65;
    QTest::newRow("green") << "green" << 90 << 160;
    QTest::newRow("blue") << "blue" << 195 << 245;
    QTest::newRow("purple") << "purple" << 246 << 290;
    QTest::newRow("pink") << "pink" << 291 << 354;
}

// Each name must look like its colour: a clear, saturated hue.
void TestTurtle::paletteHues()
{
    QFETCH(QString, name);
    QFETCH(int, minHue);
    QFETCH(int, maxHue);
    QVERIFY(palette().contains(name));
    const QColor colour = palette().value(name).toHsv();
    int hue = colour.hsvHue();
    if (hue > 180 && minHue < 0)
        hue -= 360;
    QVERIFY2(hue >= minHue && hue <= maxHue, qPrintable(QString::number(hue)));
    QVERIFY2(colour.hsvSaturationF() >= 0.5, qPrintable(QString::number(colour.hsvSaturationF())));
    QCOMPARE(colour.alphaF(), 1.0);
}

void TestTurtle::strokeColorFallsBackToViolet_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QColor>("expected");

    for (const QString &name : LogoParser::colorNames())
        QTest::newRow(qPrintable(name)) << name << palette().value(name);
    QTest::newRow("white is white") << "white" << QColor(Qt::white);
    QTest::newRow("unknown") << "teal" << colors::violet;
    QTest::newRow("empty") << QString() << colors::violet;
    QTest::newRow("upper case is not a palette name") << "RED" << colors::violet;
    QTest::newRow("quoted") << "\"red" << colors::violet;
}

void TestTurtle::strokeColorFallsBackToViolet()
{
    QFETCH(QString, name);
    QFETCH(QColor, expected);
    QVERIFY(expected.isValid());
    QCOMPARE(strokeColor(name).rgba(), expected.rgba());
}

void TestTurtle::strokeRoundTrip_data()
{
    QTest::addColumn<QPointF>("from");
    QTest::addColumn<QPointF>("to");
    QTest::addColumn<QString>("color");
    QTest::addColumn<double>("width");

    QTest::newRow("simple") << QPointF(0, 0) << QPointF(0, -100) << "purple" << 4.0;
    QTest::newRow("fractions") << QPointF(1.5, -2.25) << QPointF(7.0710678118654755, -7.0710678118654746) << "pink"
                               << 2.5;
    QTest::newRow("far") << QPointF(-10000, 10000) << QPointF(1e-7, 123456.789) << "black" << 20.0;
    QTest::newRow("unknown colour kept") << QPointF(3, 4) << QPointF(5, 6) << "teal" << 1.0;
}

void TestTurtle::strokeRoundTrip()
{
    QFETCH(QPointF, from);
    QFETCH(QPointF, to);
    QFETCH(QString, color);
    QFETCH(double, width);
    const Stroke stroke{from, to, color, width};

    const QJsonObject object = stroke.toJson();
    QStringList keys = object.keys();
    keys.sort();
    QCOMPARE(keys, QStringList({"color", "from", "to", "width"}));
    QCOMPARE(object.value("from").toArray(), QJsonArray({from.x(), from.y()}));
    QCOMPARE(object.value("to").toArray(), QJsonArray({to.x(), to.y()}));
    QVERIFY(object.value("from").toArray().at(0).isDouble());
    QCOMPARE(object.value("color"), QJsonValue(color));
    QVERIFY(object.value("width").isDouble());
    QCOMPARE(object.value("width").toDouble(), width);

    // Through the text form, as a saved creation keeps it.
    const QByteArray text = QJsonDocument(object).toJson(QJsonDocument::Compact);
    const std::optional<Stroke> decoded = Stroke::fromJson(QJsonDocument::fromJson(text).object());
    QVERIFY(decoded.has_value());
    QCOMPARE(decoded->from, from);
    QCOMPARE(decoded->to, to);
    QCOMPARE(decoded->color, color);
    QCOMPARE(decoded->width, width);
    QVERIFY(*decoded == stroke);
}

void TestTurtle::strokeDecodes_data()
{
    QTest::addColumn<QString>("json");
    QTest::addColumn<QString>("stroke");

    QTest::newRow("integers") << R"({"from":[0,0],"to":[1,-2],"color":"red","width":3})" << "0,0>1,-2 red 3";
    QTest::newRow("key order free") << R"({"width":2.5,"color":"blue","to":[3.5,4],"from":[-1,0.25]})"
                                    << "-1,0.25>3.5,4 blue 2.5";
    QTest::newRow("extra key ignored") << R"({"from":[0,0],"to":[1,2],"color":"pink","width":4,"note":true})"
                                       << "0,0>1,2 pink 4";
}

void TestTurtle::strokeDecodes()
{
    QFETCH(QString, json);
    QFETCH(QString, stroke);
    const std::optional<Stroke> decoded = Stroke::fromJson(strokeObject(json));
    QVERIFY(decoded.has_value());
    QCOMPARE(render(*decoded), stroke);
}

void TestTurtle::strokeRefused_data()
{
    QTest::addColumn<QString>("json");

    QTest::newRow("empty object") << "{}";
    QTest::newRow("no from") << R"({"to":[1,2],"color":"red","width":3})";
    QTest::newRow("no to") << R"({"from":[0,0],"color":"red","width":3})";
    QTest::newRow("no color") << R"({"from":[0,0],"to":[1,2],"width":3})";
    QTest::newRow("no width") << R"({"from":[0,0],"to":[1,2],"color":"red"})";
    QTest::newRow("from null") << R"({"from":null,"to":[1,2],"color":"red","width":3})";
    QTest::newRow("from as object") << R"({"from":{"x":0,"y":0},"to":[1,2],"color":"red","width":3})";
    QTest::newRow("from as number") << R"({"from":0,"to":[1,2],"color":"red","width":3})";
    QTest::newRow("from with one number") << R"({"from":[0],"to":[1,2],"color":"red","width":3})";
    QTest::newRow("from empty") << R"({"from":[],"to":[1,2],"color":"red","width":3})";
    QTest::newRow("from with text") << R"({"from":["0","0"],"to":[1,2],"color":"red","width":3})";
    QTest::newRow("to with null") << R"({"from":[0,0],"to":[1,null],"color":"red","width":3})";
    QTest::newRow("to as text") << R"({"from":[0,0],"to":"1,2","color":"red","width":3})";
    QTest::newRow("color as number") << R"({"from":[0,0],"to":[1,2],"color":5,"width":3})";
    QTest::newRow("color null") << R"({"from":[0,0],"to":[1,2],"color":null,"width":3})";
    QTest::newRow("color as array") << R"({"from":[0,0],"to":[1,2],"color":["red"],"width":3})";
    QTest::newRow("width as text") << R"({"from":[0,0],"to":[1,2],"color":"red","width":"3"})";
    QTest::newRow("width null") << R"({"from":[0,0],"to":[1,2],"color":"red","width":null})";
    QTest::newRow("width as boolean") << R"({"from":[0,0],"to":[1,2],"color":"red","width":true})";
}

void TestTurtle::strokeRefused()
{
    QFETCH(QString, json);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json.toUtf8(), &error);
    QCOMPARE(error.error, QJsonParseError::NoError);
    QVERIFY(!Stroke::fromJson(document.object()).has_value());
}

QTEST_GUILESS_MAIN(TestTurtle)
#include "tst_turtle.moc"
