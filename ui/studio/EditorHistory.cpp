#include "EditorHistory.h"

#include <QQmlEngine>
#include <QTextDocument>
#include <QTimer>

#ifdef __GLIBC__
#include <malloc.h>
#endif

EditorHistory::EditorHistory(QObject *parent) : QObject(parent)
{
    // After the editor has settled, so that what the edit built and dropped is collected too.
    m_release.setSingleShot(true);
    m_release.setInterval(250);
    connect(&m_release, &QTimer::timeout, this, &EditorHistory::release);
}

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
                m_shrunk = removed > hugeEdit;
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
    if (m_shrunk)
        m_release.start();
}

void EditorHistory::release()
{
    // A huge text has left the editor; the script engine and the heap would otherwise keep the
    // memory it needed (tens of MiB) until the app quits.
    if (QQmlEngine *engine = qmlEngine(this))
        engine->collectGarbage();
#ifdef __GLIBC__
    // Once the objects the collection let go of are deleted.
    QTimer::singleShot(100, this, [] { malloc_trim(0); });
#endif
}
