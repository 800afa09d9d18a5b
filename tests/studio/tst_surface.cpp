#include "curriculum/Themes.h"
#include "gallery/PictureExport.h"
#include "turtle/Palette.h"
#include "ui/studio/DrawingSurface.h"
#include "ui/studio/SurfacePainter.h"

#include <QFile>
#include <QMetaProperty>
#include <QPainter>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

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

// Rendered on a transparent canvas, as the screen and the export do; read back unpremultiplied.
QImage render(QSize size, const SurfaceInputs &inputs)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintSurface(painter, QSizeF(size), inputs);
    painter.end();
    return image.convertToFormat(QImage::Format_ARGB32);
}

int distance(QColor a, QColor b)
{
    return std::max({std::abs(a.red() - b.red()), std::abs(a.green() - b.green()), std::abs(a.blue() - b.blue()),
                     std::abs(a.alpha() - b.alpha())});
}

int squaredDistance(QColor a, QColor b)
{
    const int r = a.red() - b.red(), g = a.green() - b.green(), bl = a.blue() - b.blue(), al = a.alpha() - b.alpha();
    return r * r + g * g + bl * bl + al * al;
}

// Mean centre of the opaque pixels nearer `color` than `background`; (-1, -1) when there are none.
QPointF centroid(const QImage &image, QColor color, QColor background)
{
    double sumX = 0, sumY = 0;
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (pixel.alpha() == 255 && squaredDistance(pixel, color) < squaredDistance(pixel, background)) {
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

class SurfaceTest : public QObject
{
    Q_OBJECT

private slots:
    void placement_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QList<Stroke>>("bounds");
        QTest::addColumn<QList<Stroke>>("ghost");
        QTest::addColumn<QList<Stroke>>("unfitted");
        QTest::addColumn<Stroke>("probe");
        QTest::addColumn<QPointF>("expected");

        const QSize phone(390, 400);
        const QList<Stroke> none;
        const QList<Stroke> toX400{line({0, 0}, {400, 0})};
        QTest::newRow("empty: origin below the centre") << phone << none << none << none << probeAt({0, 0}) << QPointF(195, 235);
        QTest::newRow("empty: top-left of the box") << phone << none << none << none << probeAt({-160, -200}) << QPointF(35, 35);
        QTest::newRow("empty: bottom-right of the box") << phone << none << none << none << probeAt({160, 130}) << QPointF(355, 365);
        QTest::newRow("x 400: left edge stays at -160") << phone << toX400 << none << none << probeAt({-160, 0}) << QPointF(35, 220);
        QTest::newRow("x 400: right edge at the margin") << phone << toX400 << none << none << probeAt({400, 0}) << QPointF(355, 220);
        QTest::newRow("far left: origin moves right") << phone << QList<Stroke>{line({-1000, 0}, {-900, 0})} << none << none
                                                     << probeAt({0, 0}) << QPointF(310.86, 209.66);
        QTest::newRow("ghost is fitted") << phone << none << QList<Stroke>{line({0, 0}, {0, -400})} << none
                                         << probeAt({0, -400}) << QPointF(195, 35);
        QTest::newRow("drawn strokes are not fitted") << phone << none << none << QList<Stroke>{line({300, 0}, {900, 0}, "blue")}
                                                      << probeAt({0, 0}) << QPointF(195, 235);
        QTest::newRow("wide view: height decides") << QSize(900, 340) << none << none << none << probeAt({0, 0})
                                                   << QPointF(450, 198.64);
        // Scale bottoms out at 0.001: the drawing shrinks to a line, the right way round.
        QTest::newRow("view smaller than its margins") << QSize(50, 60) << none << none << none
                                                       << line({-20000, 0}, {20000, 0}, "red", 1) << QPointF(25, 30.04);
    }

    void placement()
    {
        QFETCH(QSize, size);
        QFETCH(QList<Stroke>, bounds);
        QFETCH(QList<Stroke>, ghost);
        QFETCH(QList<Stroke>, unfitted);
        QFETCH(Stroke, probe);
        QFETCH(QPointF, expected);

        const QImage image = render(size, {unfitted + QList<Stroke>{probe}, ghost, bounds, {}, {}, 0, paper, false});
        const QPointF found = centroid(image, strokeColor("red"), paper);
        QVERIFY2(std::abs(found.x() - expected.x()) < 1 && std::abs(found.y() - expected.y()) < 1,
                 qPrintable(QStringLiteral("landed at %1, %2").arg(found.x()).arg(found.y())));
    }

    void lineWidth_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<double>("width");
        QTest::addColumn<double>("pixels");

        // The box is 320 wide, so a view 70 + 320 s wide and tall enough has scale s.
        QTest::newRow("scale 1") << QSize(390, 400) << 4.0 << 4.0;
        QTest::newRow("width 20 at scale 0.5") << QSize(230, 400) << 20.0 << 10.0;
        QTest::newRow("width 1 at scale 0.2 stays 1") << QSize(134, 400) << 1.0 << 1.0;
        QTest::newRow("width 0.5 at scale 1 becomes 1") << QSize(390, 400) << 0.5 << 1.0;
    }

    void lineWidth()
    {
        QFETCH(QSize, size);
        QFETCH(double, width);
        QFETCH(double, pixels);

        const QColor blue = strokeColor("blue");
        const QImage image = render(size, {{line({0, -100}, {0, 100}, "blue", width)}, {}, {}, {}, {}, 0, paper, false});
        double across = 0;
        for (int x = 0; x < size.width(); ++x)
            across += coverage(image.pixelColor(x, size.height() / 2), blue);
        QVERIFY2(std::abs(across - pixels) < 0.3, qPrintable(QString::number(across)));
    }

    void strokeColour_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QColor>("expected");

        QTest::newRow("red") << "red" << palette().value("red");
        QTest::newRow("black is ink") << "black" << colors::ink;
        QTest::newRow("yellow") << "yellow" << palette().value("yellow");
        QTest::newRow("unknown is violet") << "sparkly" << colors::violet;
        QTest::newRow("empty is violet") << "" << colors::violet;
    }

    void strokeColour()
    {
        QFETCH(QString, name);
        QFETCH(QColor, expected);

        const QImage image = render({390, 400}, {{line({-50, 0}, {50, 0}, name, 20)}, {}, {}, {}, {}, 0, meadow, false});
        QCOMPARE_LE(distance(image.pixelColor(195, 235), expected.toRgb()), 1);
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

    void drawingOrder()
    {
        const Stroke across = line({-100, 0}, {100, 0}, "blue", 10);
        const Stroke down = line({0, -100}, {0, 100}, "red", 10);
        const QColor crossing = QColor::fromRgb(render({390, 400}, {{across}, {across}, {}, {}, {}, 0, paper, false}).pixel(195, 235));
        QCOMPARE_LE(distance(crossing, strokeColor("blue").toRgb()), 1);
        const QImage laterOnTop = render({390, 400}, {{across, down}, {}, {}, {}, {}, 0, paper, false});
        QCOMPARE_LE(distance(laterOnTop.pixelColor(195, 235), strokeColor("red").toRgb()), 1);
    }

    void grid_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<bool>("grid");
        QTest::addColumn<QList<Stroke>>("bounds");
        QTest::addColumn<QPoint>("pixel");
        QTest::addColumn<bool>("dot");

        const QSize phone(390, 400);
        const QList<Stroke> none;
        QTest::newRow("first dot") << phone << true << none << QPoint(16, 16) << true;
        QTest::newRow("first dot, other quarter") << phone << true << none << QPoint(17, 17) << true;
        QTest::newRow("dot 7 across, 9 down") << phone << true << none << QPoint(170, 214) << true;
        QTest::newRow("between dots") << phone << true << none << QPoint(27, 27) << false;
        QTest::newRow("before the first dot") << phone << true << none << QPoint(14, 16) << false;
        QTest::newRow("grid off: first dot") << phone << false << none << QPoint(16, 16) << false;
        QTest::newRow("grid off: dot 7 across") << phone << false << none << QPoint(170, 214) << false;
        QTest::newRow("dot just inside the width") << QSize(391, 400) << true << none << QPoint(390, 126) << true;
        QTest::newRow("does not scale with the drawing") << phone << true << QList<Stroke>{line({0, 0}, {3000, 0})}
                                                         << QPoint(170, 214) << true;
    }

    void grid()
    {
        QFETCH(QSize, size);
        QFETCH(bool, grid);
        QFETCH(QList<Stroke>, bounds);
        QFETCH(QPoint, pixel);
        QFETCH(bool, dot);

        const QImage image = render(size, {{}, {}, bounds, {}, {}, 0, paper, grid});
        const int darkening = 255 - image.pixelColor(pixel).red();
        if (dot) {
            // A faint dot: ink at 0.1 over most of the pixel.
            QVERIFY2(darkening >= 10 && darkening <= 25, qPrintable(QString::number(darkening)));
        } else {
            QCOMPARE(darkening, 0);
        }
    }

    void turtle_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<bool>("hasPoint");
        QTest::addColumn<QImage>("picture");
        QTest::addColumn<double>("heading");
        QTest::addColumn<QPoint>("offset");
        QTest::addColumn<QColor>("expected");

        const QSize phone(390, 400);
        QImage grey(8, 8, QImage::Format_ARGB32);
        grey.fill(QColor(128, 128, 128));
        QImage white(8, 8, QImage::Format_ARGB32);
        white.fill(Qt::white);
        // Red on the half that faces the direction of travel.
        QImage facingUp = white.copy();
        QPainter(&facingUp).fillRect(0, 0, 8, 4, Qt::red);
        const QColor darkened(100, 120, 110);
        const QColor redMultiplied(200, 0, 0);

        QTest::newRow("no point: hidden") << phone << false << grey << 0.0 << QPoint(0, 0) << meadow;
        QTest::newRow("no picture: hidden") << phone << true << QImage() << 0.0 << QPoint(0, 0) << meadow;
        QTest::newRow("multiply: grey halves the canvas") << phone << true << grey << 0.0 << QPoint(0, 0) << darkened;
        QTest::newRow("multiply: white vanishes") << phone << true << white << 0.0 << QPoint(0, 0) << meadow;
        QTest::newRow("56 wide: inside") << phone << true << grey << 0.0 << QPoint(26, -26) << darkened;
        QTest::newRow("56 wide: outside") << phone << true << grey << 0.0 << QPoint(30, 0) << meadow;
        QTest::newRow("not scaled: inside") << QSize(230, 400) << true << grey << 0.0 << QPoint(-26, 26) << darkened;
        QTest::newRow("not scaled: outside") << QSize(230, 400) << true << grey << 0.0 << QPoint(0, 30) << meadow;
        QTest::newRow("heading 0 faces up") << phone << true << facingUp << 0.0 << QPoint(0, -14) << redMultiplied;
        QTest::newRow("heading 0, tail") << phone << true << facingUp << 0.0 << QPoint(0, 14) << meadow;
        QTest::newRow("heading 90 faces right") << phone << true << facingUp << 90.0 << QPoint(14, 0) << redMultiplied;
        QTest::newRow("heading 180 faces down") << phone << true << facingUp << 180.0 << QPoint(0, 14) << redMultiplied;
        QTest::newRow("heading -90 faces left") << phone << true << facingUp << -90.0 << QPoint(-14, 0) << redMultiplied;
        QTest::newRow("heading 450 faces right") << phone << true << facingUp << 450.0 << QPoint(14, 0) << redMultiplied;
        QTest::newRow("heading 45 faces up-right") << phone << true << facingUp << 45.0 << QPoint(10, -10) << redMultiplied;
        QTest::newRow("heading 45, tail") << phone << true << facingUp << 45.0 << QPoint(-10, 10) << meadow;
    }

    void turtle()
    {
        QFETCH(QSize, size);
        QFETCH(bool, hasPoint);
        QFETCH(QImage, picture);
        QFETCH(double, heading);
        QFETCH(QPoint, offset);
        QFETCH(QColor, expected);

        SurfaceInputs inputs{{}, {}, {}, {}, picture, heading, meadow, false};
        // Whole pixels: the point lands on a pixel corner in both view sizes.
        const QPointF at = size.width() == 390 ? QPointF(0, 0) : QPointF(0, 1);
        if (hasPoint)
            inputs.point = at;
        const QPoint centre = fitSurface(QSizeF(size), {}, {}).map(at).toPoint();
        QCOMPARE(centre, size.width() == 390 ? QPoint(195, 235) : QPoint(115, 218));
        const QImage image = render(size, inputs);
        const QColor found = image.pixelColor(centre + offset);
        QVERIFY2(distance(found, expected) <= 3, qPrintable(found.name()));
    }

    void corners_data()
    {
        QTest::addColumn<QPoint>("pixel");
        QTest::addColumn<int>("alpha");

        QTest::newRow("top-left") << QPoint(0, 0) << 0;
        QTest::newRow("top-left, in the curve") << QPoint(3, 3) << 0;
        QTest::newRow("top edge near the corner") << QPoint(8, 0) << 0;
        QTest::newRow("left edge near the corner") << QPoint(0, 8) << 0;
        QTest::newRow("top-right") << QPoint(389, 0) << 0;
        QTest::newRow("bottom-left") << QPoint(0, 399) << 0;
        QTest::newRow("bottom-right") << QPoint(389, 399) << 0;
        QTest::newRow("bottom-right, in the curve") << QPoint(386, 396) << 0;
        QTest::newRow("inside the curve") << QPoint(5, 5) << 255;
        QTest::newRow("top edge past the curve") << QPoint(20, 0) << 255;
        QTest::newRow("left edge middle") << QPoint(0, 200) << 255;
    }

    void corners()
    {
        QFETCH(QPoint, pixel);
        QFETCH(int, alpha);

        // A fat stroke runs over the top-left and bottom-right corners: it must be clipped too.
        const Stroke diagonal = line({-1000, -1000}, {1000, 1000}, "blue", 60);
        const QImage image = render({390, 400}, {{diagonal}, {}, {}, {}, {}, 0, meadow, true});
        QCOMPARE(image.pixelColor(pixel).alpha(), alpha);
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

    void itemNotifiesOnRealChanges_data()
    {
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<QVariant>("value");

        QImage picture(4, 4, QImage::Format_ARGB32);
        picture.fill(Qt::green);
        QTest::newRow("strokes") << QByteArray("strokes") << QVariant::fromValue(QList<Stroke>{line({0, 0}, {5, 5})});
        QTest::newRow("ghost") << QByteArray("ghost") << QVariant::fromValue(QList<Stroke>{line({0, 0}, {5, 5})});
        QTest::newRow("bounds") << QByteArray("bounds") << QVariant::fromValue(QList<Stroke>{line({0, 0}, {5, 5})});
        QTest::newRow("point") << QByteArray("point") << QVariant(QPointF(3, 4));
        QTest::newRow("hasPoint") << QByteArray("hasPoint") << QVariant(true);
        QTest::newRow("turtle") << QByteArray("turtle") << QVariant(picture);
        QTest::newRow("heading") << QByteArray("heading") << QVariant(90.0);
        QTest::newRow("background") << QByteArray("background") << QVariant(meadow);
        QTest::newRow("grid") << QByteArray("grid") << QVariant(true);
    }

    void itemNotifiesOnRealChanges()
    {
        QFETCH(QByteArray, property);
        QFETCH(QVariant, value);

        DrawingSurface item;
        const QMetaProperty meta = item.metaObject()->property(item.metaObject()->indexOfProperty(property));
        QVERIFY(meta.hasNotifySignal());
        QSignalSpy spy(&item, meta.notifySignal());
        QVERIFY(item.setProperty(property, value));
        QVERIFY(item.setProperty(property, value));
        QCOMPARE(spy.count(), 1);
        QCOMPARE(item.property(property), value);
    }

    void itemPaintsTheSurface()
    {
        DrawingSurface item;
        item.setSize(QSizeF(390, 400));
        QImage picture(8, 8, QImage::Format_ARGB32);
        picture.fill(QColor(90, 90, 90));
        const QList<Stroke> drawing{line({0, 0}, {0, -100}, "green", 6), line({0, -100}, {80, -100}, "sparkly")};
        item.setStrokes(drawing);
        item.setGhost({line({0, 0}, {-100, 0})});
        item.setBounds(drawing + QList<Stroke>{line({0, 0}, {0, 300})});
        item.setPoint(QPointF(80, -100));
        item.setTurtle(picture);
        item.setHeading(90);
        item.setBackground(meadow);
        item.setGrid(true);

        const auto paintItem = [&item] {
            QImage image(390, 400, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent);
            QPainter painter(&image);
            item.paint(&painter);
            painter.end();
            return image.convertToFormat(QImage::Format_ARGB32);
        };
        SurfaceInputs expected{drawing, item.ghost(), item.bounds(), {}, picture, 90, meadow, true};
        QCOMPARE(paintItem(), render({390, 400}, expected));
        item.setHasPoint(true);
        expected.point = QPointF(80, -100);
        const QImage withTurtle = paintItem();
        QCOMPARE(withTurtle, render({390, 400}, expected));
        QVERIFY(withTurtle != render({390, 400}, {drawing, item.ghost(), item.bounds(), {}, picture, 90, meadow, true}));
    }
};

QTEST_MAIN(SurfaceTest)
#include "tst_surface.moc"
