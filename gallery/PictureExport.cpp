#include "gallery/PictureExport.h"

#include "language/LogoError.h"
#include "canvas/SurfacePainter.h"

#include <QBuffer>
#include <QFile>
#include <QImageWriter>
#include <QPainter>

QImage renderPicture(const QList<Stroke> &strokes, const QColor &background)
{
    QImage image(pictureSize, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return image;
    image.fill(Qt::transparent);

    SurfaceInputs inputs;
    inputs.strokes = strokes;
    inputs.bounds = strokes;
    inputs.background = background;
    {
        QPainter painter(&image);
        paintSurface(painter, QSizeF(pictureSize), inputs);
    }
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
        if (!writer.write(image))
            png.clear();
    }
    if (png.isEmpty())
        throw LogoError(QStringLiteral("I couldn't create that picture. Try again."));
    return png;
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
