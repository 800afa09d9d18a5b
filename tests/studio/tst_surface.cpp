#include "curriculum/Themes.h"
#include "gallery/PictureExport.h"
#include "turtle/Palette.h"
#include "ui/studio/DrawingSurface.h"
#include "canvas/StrokeHit.h"
#include "canvas/SurfacePainter.h"

#include <QFile>
#include <QMetaProperty>
#include <QPainter>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <functional>

namespace {

const QColor paper = Qt::white;
const QColor meadow(200, 240, 220);

Stroke line(QPointF from, QPointF to, const QString &color = QStringLiteral("red"), double width = 4)
{
    return Stroke{from, to, color, width};
}

// A round blob centred on a turtle point, to find where that point lands.
Stroke probeAt(QPointF p)
{
    return line(p - QPointF(0.5, 0), p + QPointF(0.5, 0), QStringLiteral("red"), 12);
}

// Painted on a transparent canvas, as the screen and the export do; read back unpremultiplied.
QImage paintedOn(QSize size, const std::function<void(QPainter &)> &paint)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paint(painter);
    painter.end();
    return image.convertToFormat(QImage::Format_ARGB32);
}

QImage render(QSize size, const SurfaceInputs &inputs)
{
    return paintedOn(size, [&](QPainter &painter) { paintSurface(painter, QSizeF(size), inputs); });
}

int distance(QColor a, QColor b)
{
    return std::max({std::abs(a.red() - b.red()), std::abs(a.green() - b.green()), std::abs(a.blue() - b.blue()),
                     std::abs(a.alpha() - b.alpha())});
}

// Mean centre of the opaque pixels nearer `color` than `background`; (-1, -1) when there are none.
QPointF centroid(const QImage &image, QColor color, QColor background)
{
    double sumX = 0, sumY = 0;
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (pixel.alpha() == 255 && distance(pixel, color) < distance(pixel, background)) {
                sumX += x + 0.5;
                sumY += y + 0.5;
                ++count;
            }
        }
    }
    return count ? QPointF(sumX / count, sumY / count) : QPointF(-1, -1);
}

// How much of `full` (over the white paper) a pixel shows, 0 to 1, read on the red channel.
double coverage(QColor pixel, QColor full)
{
    return (255.0 - pixel.red()) / (255.0 - full.red());
}

QColor faintInk()
{
    const QColor ink = colors::ink.toRgb();
    const auto mix = [](int paperLevel, int inkLevel) { return qRound(paperLevel * 0.81 + inkLevel * 0.19); };
    return QColor(mix(255, ink.red()), mix(255, ink.green()), mix(255, ink.blue()));
}

} // namespace

Q_DECLARE_METATYPE(SurfaceInputs)

class SurfaceTest : public QObject
{
    Q_OBJECT

private slots:
    // Where a red blob on a turtle point lands; only the bounds and the ghost are fitted into view.
    void placement_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<SurfaceInputs>("inputs");
        QTest::addColumn<QPointF>("expected");

        const auto at = [](QPointF p, const QList<Stroke> &bounds = {}, const QList<Stroke> &ghost = {},
                           const QList<Stroke> &drawn = {}) {
            return SurfaceInputs{drawn + QList<Stroke>{probeAt(p)}, ghost, bounds, {}, {}, 0, paper, false};
        };
        const QSize phone(390, 400);
        const QList<Stroke> toX400{line({0, 0}, {400, 0})};
        QTest::newRow("empty: origin below the centre") << phone << at({0, 0}) << QPointF(195, 235);
        QTest::newRow("empty: top-left of the box") << phone << at({-160, -200}) << QPointF(35, 35);
        QTest::newRow("x 400: left edge stays at -160") << phone << at({-160, 0}, toX400) << QPointF(35, 220);
        QTest::newRow("x 400: right edge at the margin") << phone << at({400, 0}, toX400) << QPointF(355, 220);
        QTest::newRow("far left: origin moves right") << phone << at({0, 0}, {line({-1000, 0}, {-900, 0})}) << QPointF(310.86, 209.66);
        QTest::newRow("ghost is fitted") << phone << at({0, -400}, {}, {line({0, 0}, {0, -400})}) << QPointF(195, 35);
        QTest::newRow("drawn strokes are not fitted") << phone << at({0, 0}, {}, {}, {line({300, 0}, {900, 0}, "blue")})
                                                      << QPointF(195, 235);
        QTest::newRow("wide view: height decides") << QSize(900, 340) << at({0, 0}) << QPointF(450, 198.64);
        // Scale bottoms out at 0.001: the drawing shrinks to a line, the right way round.
        QTest::newRow("view smaller than its margins") << QSize(50, 60)
            << SurfaceInputs{{line({-20000, 0}, {20000, 0}, "red", 1)}, {}, {}, {}, {}, 0, paper, false} << QPointF(25, 30.04);
    }

    void placement()
    {
        QFETCH(QSize, size);
        QFETCH(SurfaceInputs, inputs);
        QFETCH(QPointF, expected);

        const QPointF found = centroid(render(size, inputs), strokeColor("red"), paper);
        QVERIFY2(std::abs(found.x() - expected.x()) < 1 && std::abs(found.y() - expected.y()) < 1,
                 qPrintable(QStringLiteral("landed at %1, %2").arg(found.x()).arg(found.y())));
    }

    // The box is 320 wide, so a view 70 + 320 s wide and tall enough has scale s; no line is thinner than a pixel.
    void lineWidth()
    {
        for (const auto &[size, width, pixels] : {std::tuple(QSize(230, 400), 20.0, 10.0), std::tuple(QSize(134, 400), 1.0, 1.0)}) {
            const QImage image = render(size, {{line({0, -100}, {0, 100}, "blue", width)}, {}, {}, {}, {}, 0, paper, false});
            double across = 0;
            for (int x = 0; x < size.width(); ++x)
                across += coverage(image.pixelColor(x, size.height() / 2), strokeColor("blue"));
            QVERIFY2(std::abs(across - pixels) < 0.3, qPrintable(QStringLiteral("width %1: %2").arg(width).arg(across)));
        }
    }

    // One pixel of one render: stroke colours, what lies on top, and the turtle multiplied onto the canvas.
    void pixelColour_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<SurfaceInputs>("inputs");
        QTest::addColumn<QPoint>("pixel");
        QTest::addColumn<QColor>("expected");

        const QSize phone(390, 400);
        const QPoint origin(195, 235);
        const auto drawn = [](const QList<Stroke> &strokes, const QList<Stroke> &ghost = {}) {
            return SurfaceInputs{strokes, ghost, {}, {}, {}, 0, meadow, false};
        };
        const auto bar = [&](const QString &name) { return drawn({line({-50, 0}, {50, 0}, name, 20)}); };
        const Stroke across = line({-100, 0}, {100, 0}, "blue", 10);
        QTest::newRow("red") << phone << bar("red") << origin << palette().value("red");
        QTest::newRow("black is ink") << phone << bar("black") << origin << colors::ink;
        QTest::newRow("unknown is violet") << phone << bar("sparkly") << origin << colors::violet;
        QTest::newRow("strokes over the ghost") << phone << drawn({across}, {across}) << origin << strokeColor("blue");
        QTest::newRow("later stroke on top") << phone << drawn({across, line({0, -100}, {0, 100}, "red", 10)}) << origin
                                             << strokeColor("red");

        QImage grey(8, 8, QImage::Format_ARGB32);
        grey.fill(QColor(128, 128, 128));
        QImage white(8, 8, QImage::Format_ARGB32);
        white.fill(Qt::white);
        // Red on the half that faces the direction of travel.
        QImage up = white.copy();
        QPainter(&up).fillRect(0, 0, 8, 4, Qt::red);
        const QColor darkened(100, 120, 110), redMultiplied(200, 0, 0);
        const auto turtle = [](std::optional<QPointF> at, const QImage &picture, double heading = 0) {
            return SurfaceInputs{{}, {}, {}, at, picture, heading, meadow, false};
        };
        // Whole pixels: the point lands on a pixel corner in both view sizes; (0, 1) at scale 0.5 is (115, 218).
        const QPointF o(0, 0), below(0, 1);
        const QSize narrow(230, 400);
        QTest::newRow("no point: hidden") << phone << turtle({}, grey) << origin << meadow;
        QTest::newRow("no picture: hidden") << phone << turtle(o, {}) << origin << meadow;
        QTest::newRow("multiply: grey halves the canvas") << phone << turtle(o, grey) << origin << darkened;
        QTest::newRow("multiply: white vanishes") << phone << turtle(o, white) << origin << meadow;
        QTest::newRow("56 wide: inside") << phone << turtle(o, grey) << origin + QPoint(26, -26) << darkened;
        QTest::newRow("56 wide: outside") << phone << turtle(o, grey) << origin + QPoint(30, 0) << meadow;
        QTest::newRow("not scaled: inside") << narrow << turtle(below, grey) << QPoint(115 - 26, 218 + 26) << darkened;
        QTest::newRow("not scaled: outside") << narrow << turtle(below, grey) << QPoint(115, 218 + 30) << meadow;
        QTest::newRow("heading 0 faces up") << phone << turtle(o, up) << origin + QPoint(0, -14) << redMultiplied;
        QTest::newRow("heading 45 faces up-right") << phone << turtle(o, up, 45) << origin + QPoint(10, -10) << redMultiplied;
    }

    void pixelColour()
    {
        QFETCH(QSize, size);
        QFETCH(SurfaceInputs, inputs);
        QFETCH(QPoint, pixel);
        QFETCH(QColor, expected);

        const QColor found = render(size, inputs).pixelColor(pixel);
        // Multiplying the turtle's picture in may round a little more than plain strokes.
        const int tolerance = inputs.turtle.isNull() ? 1 : 3;
        QVERIFY2(distance(found, expected.toRgb()) <= tolerance, qPrintable(found.name(QColor::HexArgb)));
    }

    void ghostIsFaintDashedInk()
    {
        // The ghost's own colour and width must not show.
        const QImage image = render({390, 400}, {{}, {line({-150, 0}, {150, 0}, "red", 20)}, {}, {}, {}, 0, paper, false});
        const QColor faint = faintInk();

        QList<int> dashStarts;
        // The scan may begin inside a dash; only whole dashes count.
        bool on = true;
        for (int x = 60; x < 330; ++x) {
            const QColor pixel = image.pixelColor(x, 235);
            // Never darker or redder than ink at 0.19.
            QCOMPARE_LE(coverage(pixel, faint), 1.05);
            QCOMPARE_LE(std::abs(pixel.red() - pixel.green()), 6);
            const bool covered = coverage(pixel, faint) > 0.5;
            if (covered && !on)
                dashStarts.append(x);
            on = covered;
        }
        // 5 on, 5 off: a dash starts every 10 points.
        QVERIFY2(dashStarts.size() >= 25, qPrintable(QString::number(dashStarts.size())));
        for (qsizetype i = 1; i < dashStarts.size(); ++i)
            QVERIFY2(std::abs(dashStarts[i] - dashStarts[i - 1] - 10) <= 1, qPrintable(QString::number(dashStarts[i])));

        // Two points thick across the middle of a dash.
        const int middle = dashStarts.at(dashStarts.size() / 2) + 3;
        QCOMPARE_GE(coverage(image.pixelColor(middle, 235), faint), 0.9);
        double thickness = 0;
        for (int y = 200; y < 270; ++y)
            thickness += coverage(image.pixelColor(middle, y), faint);
        QVERIFY2(std::abs(thickness - 2) < 0.3, qPrintable(QString::number(thickness)));
    }

    // Faint dots (ink at 0.1 over most of a pixel) 16 points apart from (16, 16), whatever the drawing's scale.
    void grid()
    {
        const auto darkening = [](QSize size, bool grid, QPoint pixel, const QList<Stroke> &bounds = {}) {
            return 255 - render(size, {{}, {}, bounds, {}, {}, 0, paper, grid}).pixelColor(pixel).red();
        };
        const QSize phone(390, 400);
        for (const int dot : {darkening(phone, true, {16, 16}), darkening(phone, true, {170, 214}),
                              darkening({391, 400}, true, {390, 126}), // just inside the width
                              darkening(phone, true, {170, 214}, {line({0, 0}, {3000, 0})})})
            QVERIFY2(dot >= 10 && dot <= 25, qPrintable(QString::number(dot)));
        QCOMPARE(darkening(phone, true, {27, 27}), 0);
        QCOMPARE(darkening(phone, true, {14, 16}), 0);
        QCOMPARE(darkening(phone, false, {16, 16}), 0);
    }

    void corners()
    {
        // A fat stroke runs over the top-left and bottom-right corners: it must be clipped too.
        const Stroke diagonal = line({-1000, -1000}, {1000, 1000}, "blue", 60);
        const QImage image = render({390, 400}, {{diagonal}, {}, {}, {}, {}, 0, meadow, true});
        const auto alphaAt = [&image](QPoint p) { return std::pair(p, image.pixelColor(p).alpha()); };
        // Cut away at each corner and along the curve, from both sides of its end on the top edge.
        for (const QPoint p : {QPoint(0, 0), QPoint(3, 3), QPoint(8, 0), QPoint(389, 0), QPoint(0, 399), QPoint(386, 396)})
            QCOMPARE(alphaAt(p), std::pair(p, 0));
        for (const QPoint p : {QPoint(5, 5), QPoint(20, 0)})
            QCOMPARE(alphaAt(p), std::pair(p, 255));
    }

    void exportPicture_data()
    {
        QTest::addColumn<QColor>("theme");
        for (const CanvasTheme &theme : themes())
            QTest::newRow(qPrintable(theme.name)) << theme.color;
    }

    void exportPicture()
    {
        QFETCH(QColor, theme);

        // Reaching x 600 proves the drawing itself is fitted: it ends at the right-hand margin.
        const QByteArray png = pictureData({line({0, 0}, {600, 0}, "red", 8)}, theme);
        QVERIFY(png.startsWith("\x89PNG\r\n\x1a\n"));
        const QImage image = QImage::fromData(png, "PNG").convertToFormat(QImage::Format_ARGB32);
        QCOMPARE(image.size(), QSize(1200, 1000));

        const QColor red = strokeColor("red").toRgb();
        const QColor background = theme.toRgb();
        QCOMPARE_LE(distance(image.pixelColor(700, 552), red), 1);
        QCOMPARE_LE(distance(image.pixelColor(1160, 552), red), 1);
        QCOMPARE_LE(distance(image.pixelColor(1176, 552), background), 1);
        for (const QPoint corner : {QPoint(0, 0), QPoint(1199, 0), QPoint(0, 999), QPoint(1199, 999)})
            QCOMPARE(image.pixelColor(corner).alpha(), 0);

        // Away from the stroke and the corners, only the theme colour: no grid, ghost or turtle.
        const QRect stroke(255, 535, 930, 35);
        int stray = 0;
        for (int y = 16; y < 984; ++y) {
            for (int x = 16; x < 1184; ++x) {
                if (!stroke.contains(x, y) && distance(image.pixelColor(x, y), background) > 1)
                    ++stray;
            }
        }
        QCOMPARE(stray, 0);
    }

    // The picture is painted in parts at once; together they must be one paint's pixels.
    void exportIsOnePaint()
    {
        QList<Stroke> drawing;
        for (int i = 0; i < 300; ++i)
            drawing.append(line({i * 1.7 - 250, -200 + i * 1.3}, {250 - i * 1.1, 150 - i * 0.9}, "blue", 1 + i % 25));
        SurfaceInputs inputs;
        inputs.strokes = drawing;
        inputs.bounds = drawing;
        inputs.background = meadow;
        QCOMPARE(renderPicture(drawing, meadow).convertToFormat(QImage::Format_ARGB32), render(pictureSize, inputs));
    }

    void writeReplacesAndRefuses()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("Marble Cove creation.png"));
        QVERIFY(::writePicture(path, QByteArray(5000, 'x')));
        const QByteArray png = pictureData({line({0, 0}, {50, 0})}, themes().at(1).color);
        QVERIFY(::writePicture(path, png));
        QFile written(path);
        QVERIFY(written.open(QIODevice::ReadOnly));
        QCOMPARE(written.readAll(), png);

        QVERIFY(!::writePicture(folder.filePath(QStringLiteral("missing/picture.png")), png));
        QVERIFY(!QFile::exists(folder.filePath(QStringLiteral("missing/picture.png"))));
    }

    // Each input notifies once, and only when its value really changes.
    void itemNotifiesOnRealChanges()
    {
        QImage picture(4, 4, QImage::Format_ARGB32);
        picture.fill(Qt::green);
        const QVariant strokes = QVariant::fromValue(QList<Stroke>{line({0, 0}, {5, 5})});
        const QList<std::pair<const char *, QVariant>> changes{
            {"strokes", strokes}, {"ghost", strokes}, {"bounds", strokes}, {"point", QPointF(3, 4)}, {"hasPoint", true},
            {"turtle", picture}, {"heading", 90.0}, {"background", meadow}, {"grid", true}};
        DrawingSurface item;
        for (const auto &[name, value] : changes) {
            const QMetaProperty meta = item.metaObject()->property(item.metaObject()->indexOfProperty(name));
            QVERIFY2(meta.hasNotifySignal(), name);
            QSignalSpy spy(&item, meta.notifySignal());
            QVERIFY(item.setProperty(name, value));
            QVERIFY(item.setProperty(name, value));
            QCOMPARE(std::pair(QByteArray(name), int(spy.count())), std::pair(QByteArray(name), 1));
            QCOMPARE(item.property(name), value);
        }
    }

    // At scale 2: a click lands on a stroke (where two cross, the later), within reach of one (the
    // nearest, not the latest), or on nothing.
    void strokeUnderAClick()
    {
        const QList<Stroke> strokes{line({0, 0}, {100, 0}, "red", 4), line({0, 100}, {100, 100}, "red", 10),
                                    line({100, 0}, {100, 120}, "red", 2)};
        for (const auto &[click, stroke] : {std::pair(QPointF(100, 20), 0), std::pair(QPointF(199, 220), 2),
                                            std::pair(QPointF(100, 30), 0), std::pair(QPointF(190, 30), 0),
                                            std::pair(QPointF(100, 40), -1), std::pair(QPointF(300, 20), -1)})
            QCOMPARE(std::pair(click, int(strokeAt(strokes, SurfaceFit{2, 0, 20}, click, 8))), std::pair(click, stroke));
    }

    // The item keeps what it painted and adds only new strokes; whatever happens to its inputs,
    // what it shows must be what one full paint of the same inputs shows.
    void itemKeepsTheFullPicture()
    {
        DrawingSurface item;
        item.setSize(QSizeF(900, 340));
        QImage picture(8, 8, QImage::Format_ARGB32);
        picture.fill(QColor(90, 90, 90));
        item.setTurtle(picture);
        item.setGrid(true);
        item.setBackground(meadow);
        const QList<Stroke> ghost{line({0, 0}, {-100, 40}), line({-100, 40}, {50, -150})};
        item.setGhost(ghost);

        QRandomGenerator random(17);
        const QStringList colours = palette().keys();
        QList<Stroke> drawing;
        QPointF at(0, 0);
        for (int i = 0; i < 2000; ++i) {
            const QPointF next(random.bounded(-300, 300), random.bounded(-250, 150));
            drawing.append(line(at, next, colours.at(random.bounded(int(colours.size()))), random.bounded(1, 30)));
            at = next;
        }
        item.setBounds(drawing);

        const auto paintItem = [&item] {
            const QSize size = item.size().toSize();
            return paintedOn(size, [&item](QPainter &painter) { item.paint(&painter); });
        };
        // Each setter feeds its own input; without hasPoint the turtle stays hidden though its point is set.
        item.setStrokes(drawing.first(3));
        item.setPoint(QPointF(80, -100));
        item.setHeading(90);
        SurfaceInputs expected{drawing.first(3), ghost, drawing, {}, picture, 90, meadow, true};
        const QImage withoutTurtle = paintItem();
        QCOMPARE(withoutTurtle, render({900, 340}, expected));
        item.setHasPoint(true);
        expected.point = QPointF(80, -100);
        const QImage withTurtle = paintItem();
        QCOMPARE(withTurtle, render({900, 340}, expected));
        QVERIFY(withTurtle != withoutTurtle);

        const auto expectFullPaint = [&] { QCOMPARE(paintItem(), render(item.size().toSize(), item.inputs())); };
        // A run: the drawing grows a few strokes per frame while the turtle moves.
        for (qsizetype shown = 3; shown < drawing.size(); shown += 1 + random.bounded(60)) {
            item.setStrokes(drawing.first(shown));
            item.setPoint(drawing.at(shown).from);
            item.setHeading(shown * 7);
            paintItem();
        }
        item.setStrokes(drawing);
        expectFullPaint();
        item.setSize(QSizeF(640, 300));
        expectFullPaint();
        item.setBackground(paper);
        expectFullPaint();
        item.setGhost({});
        expectFullPaint();
        // A drawing that shrinks or changes (a new run) is not an extension of what was painted.
        item.setStrokes(drawing.first(10));
        expectFullPaint();
        drawing[5].color = QStringLiteral("sparkly");
        item.setStrokes(drawing.first(12));
        expectFullPaint();
    }
};

QTEST_MAIN(SurfaceTest)
#include "tst_surface.moc"
