#include "PictureView.h"

#include <QPainter>

PictureView::PictureView(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
}

void PictureView::setImage(const QImage &image)
{
    if (m_image == image)
        return;
    m_image = image;
    emit imageChanged();
    update();
}

void PictureView::setBackdrop(const QColor &backdrop)
{
    if (m_backdrop == backdrop)
        return;
    m_backdrop = backdrop;
    emit backdropChanged();
    update();
}

void PictureView::paint(QPainter *painter)
{
    if (m_image.isNull())
        return;
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    const QSizeF fitted = QSizeF(m_image.size()).scaled(size(), Qt::KeepAspectRatio);
    const QRectF target(QPointF((width() - fitted.width()) / 2, (height() - fitted.height()) / 2), fitted);
    if (m_backdrop.isValid()) {
        painter->fillRect(target, m_backdrop);
        painter->setCompositionMode(QPainter::CompositionMode_Multiply);
    }
    painter->drawImage(target, m_image);
}
