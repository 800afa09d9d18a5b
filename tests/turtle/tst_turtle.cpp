#include "language/Instruction.h"
#include "language/LogoParser.h"
#include "turtle/Palette.h"
#include "turtle/Stroke.h"
#include "turtle/Turtle.h"
#include "support/Golden.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QTest>

#include <cmath>
#include <tuple>

namespace {

// Rounded to a millionth so that sin/cos noise and -0 do not matter.
QString coordinate(double value)
{
    double rounded = std::round(value * 1e6) / 1e6;
    if (rounded == 0)
        rounded = 0;
    return QString::number(rounded, 'g', 12);
}

QString point(QPointF p) { return coordinate(p.x()) + u',' + coordinate(p.y()); }

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
    return parts.join(u"; ");
}

QList<Instruction> instructionsOf(const QString &program) { return LogoParser(program).parse(); }

} // namespace

class TestTurtle : public QObject
{
    Q_OBJECT

private slots:
    void geometry_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QString>("strokes");
        QTest::addColumn<QString>("point");
        QTest::addColumn<double>("heading");
        QTest::addColumn<bool>("pen");
        for (const QStringList &row : goldenRows(QStringLiteral("geometry.txt"), 6)) {
            QTest::newRow(qPrintable(row.at(0))) << row.at(1) << (row.at(2) == u"-" ? QString() : row.at(2)) << row.at(3)
                                                 << row.at(4).toDouble() << (row.at(5) == u"true");
        }
    }

    void geometry()
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

    // An unknown instruction changes nothing; a program with a fault draws nothing, not even the strokes before it.
    void nothingFromTheUnknown()
    {
        Turtle turtle;
        for (const Instruction &instruction : instructionsOf("color red width 9 right 30 forward 20"))
            turtle.apply(instruction);
        const Turtle before = turtle;

        for (const QString &name : {QStringLiteral("jump"), QStringLiteral("fd"), QStringLiteral("repeat"), QString()})
            turtle.apply(Instruction{name, 50, QStringLiteral("blue")});
        const auto state = [](const Turtle &t) { return std::tuple(t.strokes, t.point, t.heading, t.pen, t.color, t.width); };
        QVERIFY(state(turtle) == state(before));
        QVERIFY(::simulate("fd 100 jump").isEmpty());
        QVERIFY(::simulate(QStringLiteral("fd 1 ").repeated(2001)).isEmpty());
    }

    // The palette and the language agree on nine names, nine different colours, each a clear, saturated
    // hue like its name; a stroke of any other name, even "RED" or a quoted one, is violet.
    void paletteColours()
    {
        const QStringList names = palette().keys(), colorNames = LogoParser::colorNames();
        QCOMPARE(QSet<QString>(names.begin(), names.end()),
                 QSet<QString>({"pink", "purple", "blue", "green", "orange", "yellow", "white", "black", "red"}));
        QCOMPARE(QSet<QString>(names.begin(), names.end()), QSet<QString>(colorNames.begin(), colorNames.end()));
        QSet<QRgb> colours;
        for (const QString &name : names) {
            colours.insert(palette().value(name).rgba());
            QCOMPARE(strokeColor(name).rgba(), palette().value(name).rgba());
        }
        QCOMPARE(colours.size(), 9);
        for (const char *name : {"teal", "RED", "\"red"})
            QCOMPARE(strokeColor(name).rgba(), colors::violet.rgba());

        // Hue windows in degrees; red wraps around 0.
        const QList<std::tuple<QString, int, int>> windows{
            {"red", -10, 12},   {"orange", 20, 45},  {"yellow", 46, 65}, {"green", 90, 160},
            {"blue", 195, 245}, {"purple", 246, 290}, {"pink", 291, 354},
        };
        for (const auto &[name, minHue, maxHue] : windows) {
            const QColor colour = palette().value(name).toHsv();
            int hue = colour.hsvHue();
            if (hue > 180 && minHue < 0)
                hue -= 360;
            QVERIFY2(hue >= minHue && hue <= maxHue, qPrintable(name + u' ' + QString::number(hue)));
            QVERIFY2(colour.hsvSaturationF() >= 0.5, qPrintable(name + u' ' + QString::number(colour.hsvSaturationF())));
            QCOMPARE(colour.alphaF(), 1.0);
        }
    }

    void strokeRoundTrip()
    {
        const QList<Stroke> strokes{
            {QPointF(1.5, -2.25), QPointF(7.0710678118654755, -7.0710678118654746), "pink", 2.5},
            {QPointF(-10000, 10000), QPointF(1e-7, 123456.789), "black", 20.0},
            {QPointF(3, 4), QPointF(5, 6), "teal", 1.0}, // an unknown colour is kept
        };
        for (const Stroke &stroke : strokes) {
            const QJsonObject object = stroke.toJson();
            QStringList keys = object.keys();
            keys.sort();
            QCOMPARE(keys, QStringList({"color", "from", "to", "width"}));
            // Through the text form, as a saved creation keeps it; strokeFromJson pins what each key holds.
            const QByteArray text = QJsonDocument(object).toJson(QJsonDocument::Compact);
            const std::optional<Stroke> decoded = Stroke::fromJson(QJsonDocument::fromJson(text).object());
            QVERIFY2(decoded && *decoded == stroke, text.constData());
        }
    }

    // Integers and extra keys are fine; a missing or mistyped field refuses the stroke.
    void strokeFromJson()
    {
        for (const auto &[json, stroke] :
             {std::pair(R"({"from":[0,0],"to":[1,-2],"color":"red","width":3,"note":true})", "0,0>1,-2 red 3"),
              std::pair(R"({"to":[1,2],"color":"red","width":3})", ""),
              std::pair(R"({"from":[0,0],"color":"red","width":3})", ""),
              std::pair(R"({"from":{"x":0,"y":0},"to":[1,2],"color":"red","width":3})", ""),
              std::pair(R"({"from":[0],"to":[1,2],"color":"red","width":3})", ""),
              std::pair(R"({"from":["0","0"],"to":[1,2],"color":"red","width":3})", ""),
              std::pair(R"({"from":[0,0],"to":[1,2],"color":5,"width":3})", ""),
              std::pair(R"({"from":[0,0],"to":[1,2],"color":"red","width":"3"})", "")}) {
            QJsonParseError error;
            const QJsonDocument document = QJsonDocument::fromJson(json, &error);
            QCOMPARE(error.error, QJsonParseError::NoError);
            const std::optional<Stroke> decoded = Stroke::fromJson(document.object());
            QCOMPARE(std::pair(QString::fromUtf8(json), decoded ? render(*decoded) : QString()),
                     std::pair(QString::fromUtf8(json), QString::fromUtf8(stroke)));
        }
    }
};

QTEST_GUILESS_MAIN(TestTurtle)
#include "tst_turtle.moc"
