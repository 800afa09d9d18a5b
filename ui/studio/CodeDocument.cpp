#include "CodeDocument.h"

#include <QAbstractTextDocumentLayout>
#include <QTextBlock>
#include <QTextBlockFormat>
#include <QTextCursor>
#include <QTextDocument>

CodeDocument::CodeDocument(QObject *parent)
    : QObject(parent)
{
}

void CodeDocument::setDocument(QQuickTextDocument *document)
{
    if (m_document == document)
        return;
    m_document = document;
    emit documentChanged();
    QObject::disconnect(m_layoutSwap);
    if (QTextDocument *text = this->text())
        m_layoutSwap = connect(text, &QTextDocument::documentLayoutChanged, this, &CodeDocument::watchLayout);
    watchLayout();
    loaded();
}

void CodeDocument::watchLayout()
{
    QObject::disconnect(m_layoutWatch);
    if (QTextDocument *document = text())
        m_layoutWatch = connect(document->documentLayout(), &QAbstractTextDocumentLayout::update, this,
                                &CodeDocument::scheduleContinuations);
    findContinuations();
}

void CodeDocument::scheduleContinuations()
{
    // One edit may lay out several times; the marks are found once, when it is over.
    if (m_continuationsDue)
        return;
    m_continuationsDue = true;
    QMetaObject::invokeMethod(this, &CodeDocument::findContinuations, Qt::QueuedConnection);
}

void CodeDocument::findContinuations()
{
    m_continuationsDue = false;
    QList<QRectF> found;
    if (QTextDocument *document = text()) {
        for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
            const QTextLayout *layout = block.layout();
            if (!layout)
                continue;
            for (int i = 1; i < layout->lineCount(); ++i) {
                const QTextLine line = layout->lineAt(i);
                found.append(QRectF(layout->position().x(), layout->position().y() + line.y(), m_hangingIndent,
                                    line.height()));
            }
        }
    }
    if (found == m_continuations)
        return;
    m_continuations = found;
    emit continuationsChanged();
}

void CodeDocument::setHangingIndent(qreal indent)
{
    if (qFuzzyCompare(m_hangingIndent, indent))
        return;
    m_hangingIndent = indent;
    emit hangingIndentChanged();
    loaded();
}

QTextDocument *CodeDocument::text() const
{
    return m_document ? m_document->textDocument() : nullptr;
}

void CodeDocument::loaded()
{
    QTextDocument *document = text();
    if (!document)
        return;
    // New lines copy the format of the line they split from, so setting it here once is enough.
    QTextBlockFormat hanging;
    hanging.setLeftMargin(m_hangingIndent);
    hanging.setTextIndent(-m_hangingIndent);
    document->setUndoRedoEnabled(false);
    QTextCursor all(document);
    all.select(QTextCursor::Document);
    all.mergeBlockFormat(hanging);
    // Turning undo back on starts from an empty history.
    document->setUndoRedoEnabled(true);
}

void CodeDocument::beginUndoStep()
{
    // The document joins an edit to the one before only while it counts as modified.
    if (QTextDocument *document = text())
        document->setModified(false);
}
