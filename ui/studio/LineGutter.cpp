#include "ui/studio/LineGutter.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QTextBlock>
#include <QTextDocument>

LineGutter::LineGutter(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    connect(this, &LineGutter::gutterChanged, this, [this] { update(); });
}

void LineGutter::setDocument(QQuickTextDocument *document)
{
    if (m_document == document)
        return;
    if (m_document && m_document->textDocument())
        m_document->textDocument()->documentLayout()->disconnect(this);
    m_document = document;
    // Lines move whenever the layout changes: an edit, a wrap, a new width.
    if (document && document->textDocument())
        connect(document->textDocument()->documentLayout(), &QAbstractTextDocumentLayout::update, this,
                [this] { update(); });
    emit gutterChanged();
}

void LineGutter::setContentY(qreal contentY)
{
    if (qFuzzyCompare(m_contentY, contentY))
        return;
    m_contentY = contentY;
    emit gutterChanged();
}

void LineGutter::paint(QPainter *painter)
{
    if (!m_document)
        return;
    QTextDocument *text = m_document->textDocument();
    QAbstractTextDocumentLayout *layout = text->documentLayout();
    painter->setFont(m_font);
    painter->setPen(m_color);
    // The first line in view, found by position; then lines in order until the bottom edge.
    QTextBlock block = text->findBlock(layout->hitTest(QPointF(1, m_contentY), Qt::FuzzyHit));
    for (; block.isValid(); block = block.next()) {
        const QRectF box = layout->blockBoundingRect(block);
        const qreal top = box.top() - m_contentY;
        if (top > height())
            break;
        const qreal lineHeight = block.layout() && block.layout()->lineCount() > 0
            ? block.layout()->lineAt(0).height()
            : box.height();
        painter->drawText(QRectF(0, top, width() - 6, lineHeight), Qt::AlignRight | Qt::AlignVCenter,
                          QString::number(block.blockNumber() + 1));
    }
}
