#pragma once

#include <QColor>
#include <QFont>
#include <QPointer>
#include <QQuickPaintedItem>
#include <QQuickTextDocument>
#include <QtQml/qqmlregistration.h>

// Line numbers beside the code editor: one per line of the editor (a wrapped line keeps one
// number), painted only where lines are in view, so a long program costs nothing per keystroke.
class LineGutter : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickTextDocument *document READ document WRITE setDocument NOTIFY gutterChanged)
    // How far the editor's text is scrolled, and where its first line starts in this item.
    Q_PROPERTY(qreal contentY MEMBER m_contentY WRITE setContentY NOTIFY gutterChanged)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY gutterChanged)
    Q_PROPERTY(QFont font MEMBER m_font NOTIFY gutterChanged)

public:
    explicit LineGutter(QQuickItem *parent = nullptr);

    void paint(QPainter *painter) override;

    QQuickTextDocument *document() const { return m_document; }
    void setDocument(QQuickTextDocument *document);
    void setContentY(qreal contentY);

signals:
    void gutterChanged();

private:
    QPointer<QQuickTextDocument> m_document;
    qreal m_contentY = 0;
    QColor m_color = Qt::gray;
    QFont m_font;
};
