#pragma once

#include <QColor>
#include <QImage>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

// Shows one picture fitted into the item; nothing when the picture is missing. With a backdrop
// colour the picture is multiplied onto it, so its white background takes the colour of the card.
class PictureView : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QImage image READ image WRITE setImage NOTIFY imageChanged)
    Q_PROPERTY(bool hasImage READ hasImage NOTIFY imageChanged)
    Q_PROPERTY(QColor backdrop READ backdrop WRITE setBackdrop NOTIFY backdropChanged)

public:
    explicit PictureView(QQuickItem *parent = nullptr);

    QImage image() const { return m_image; }
    void setImage(const QImage &image);
    bool hasImage() const { return !m_image.isNull(); }
    QColor backdrop() const { return m_backdrop; }
    void setBackdrop(const QColor &backdrop);
    void paint(QPainter *painter) override;

signals:
    void imageChanged();
    void backdropChanged();

private:
    QImage m_image;
    QColor m_backdrop;
};
