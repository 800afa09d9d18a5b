#include "gallery/PictureExport.h"

#include "language/LogoError.h"
#include "canvas/SurfacePainter.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImageWriter>
#include <QPainter>
#include <QStandardPaths>
#include <QSvgGenerator>

#include <thread>

namespace {

void paintPicture(QPainter &painter, const QList<Stroke> &strokes, const QColor &background)
{
    SurfaceInputs inputs;
    inputs.strokes = strokes;
    inputs.bounds = strokes;
    inputs.background = background;
    paintSurface(painter, QSizeF(pictureSize), inputs);
}

const QString failed = QStringLiteral("I couldn't create that picture. Try again.");

} // namespace

QImage renderPicture(const QList<Stroke> &strokes, const QColor &background)
{
    QImage image(pictureSize, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return image;
    image.fill(Qt::transparent);

    // The top and bottom halves are painted at once, each on its own core. A half is painted as
    // the whole picture shifted by whole pixels, so its pixels are those of a single paint.
    const auto paintRows = [&](int top, int bottom) {
        QImage rows(image.scanLine(top), image.width(), bottom - top, int(image.bytesPerLine()), image.format());
        QPainter painter(&rows);
        painter.translate(0, -top);
        paintPicture(painter, strokes, background);
    };
    const int middle = image.height() / 2;
    std::thread upper(paintRows, 0, middle);
    paintRows(middle, image.height());
    upper.join();
    return image;
}

QByteArray pictureData(const QList<Stroke> &strokes, const QColor &background)
{
    const QImage image = renderPicture(strokes, background);
    QByteArray png;
    if (!image.isNull()) {
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        QImageWriter writer(&buffer, "png");
        // The fastest zlib level: half the time of the default for a file about a sixth larger.
        writer.setQuality(80);
        if (!writer.write(image))
            png.clear();
    }
    if (png.isEmpty())
        throw LogoError(failed);
    return png;
}

QByteArray drawingSvg(const QList<Stroke> &strokes, const QColor &background)
{
    QByteArray svg;
    QBuffer buffer(&svg);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(pictureSize);
    generator.setViewBox(QRect(QPoint(0, 0), pictureSize));
    generator.setTitle(QStringLiteral("Marble Cove creation"));
    {
        QPainter painter;
        if (!painter.begin(&generator))
            throw LogoError(failed);
        paintPicture(painter, strokes, background);
    }
    if (svg.isEmpty())
        throw LogoError(failed);
    return svg;
}

bool writePicture(const QString &path, const QByteArray &png)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    const bool written = file.write(png) == png.size();
    file.close();
    return written && file.error() == QFileDevice::NoError;
}

QString exportFolder()
{
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    if (!pictures.isEmpty() && QDir().mkpath(pictures))
        return pictures;
    return QDir::homePath();
}
