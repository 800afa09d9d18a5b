#include "SymbolPicture.h"

#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <QQuickWindow>

SymbolPicture::SymbolPicture(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
}

void SymbolPicture::setSource(const QString &source)
{
    if (m_source == source)
        return;
    m_source = source;
    emit sourceChanged();
    update();
}

void SymbolPicture::setColor(const QColor &color)
{
    if (m_color == color)
        return;
    m_color = color;
    emit colorChanged();
    update();
}

void SymbolPicture::paint(QPainter *painter)
{
    if (m_source.isEmpty() || width() <= 0 || height() <= 0)
        return;
    // Rendered at the screen's pixel size, so the outline stays sharp.
    const qreal ratio = window() ? window()->effectiveDevicePixelRatio() : 1.0;
    QImageReader reader(m_source);
    reader.setScaledSize((size() * ratio).toSize());
    QImage shape = reader.read();
    if (shape.isNull())
        return;
    shape = shape.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    {
        QPainter tint(&shape);
        tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
        tint.fillRect(shape.rect(), m_color);
    }
    painter->drawImage(QRectF(QPointF(0, 0), size()), shape);
}
