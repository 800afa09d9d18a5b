#include "EditorHistory.h"

#include <QTextDocument>

void EditorHistory::setDocument(QQuickTextDocument *document)
{
    if (m_document == document)
        return;
    if (m_document && m_document->textDocument())
        disconnect(m_document->textDocument(), nullptr, this, nullptr);
    m_document = document;
    if (m_document && m_document->textDocument()) {
        connect(m_document->textDocument(), &QTextDocument::contentsChange, this, [this](int, int removed, int added) {
            // Not while the edit is still being recorded: once the event loop comes back.
            if (qint64(removed) + added > hugeEdit && !m_forgetting) {
                m_forgetting = true;
                QMetaObject::invokeMethod(this, &EditorHistory::forget, Qt::QueuedConnection);
            }
        });
    }
    emit documentChanged();
}

void EditorHistory::forget()
{
    m_forgetting = false;
    QTextDocument *text = m_document ? m_document->textDocument() : nullptr;
    if (!text)
        return;
    // Switching undo off clears both stacks and compacts the text kept for them.
    text->setUndoRedoEnabled(false);
    text->setUndoRedoEnabled(true);
}
