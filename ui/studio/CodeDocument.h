#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickTextDocument>
#include <QRectF>
#include <QtQml/qqmlregistration.h>

class QTextDocument;

// The code editor's text as a document: a long line wraps with its continuation indented and
// marked (`continuations`), so it still reads as one line; undo steps back a word at a time; and
// code loaded from elsewhere (another mission, a gallery creation) starts a fresh undo history.
class CodeDocument : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickTextDocument *document READ document WRITE setDocument NOTIFY documentChanged)
    Q_PROPERTY(qreal hangingIndent READ hangingIndent WRITE setHangingIndent NOTIFY hangingIndentChanged)
    // Where each continuation of a wrapped line sits, in the editor's coordinates: the free
    // room left of it (as wide as the hanging indent) that holds its mark.
    Q_PROPERTY(QList<QRectF> continuations READ continuations NOTIFY continuationsChanged)

public:
    explicit CodeDocument(QObject *parent = nullptr);

    QQuickTextDocument *document() const { return m_document; }
    void setDocument(QQuickTextDocument *document);
    qreal hangingIndent() const { return m_hangingIndent; }
    void setHangingIndent(qreal indent);
    QList<QRectF> continuations() const { return m_continuations; }

    // After the editor's whole text was replaced: indents every line's continuation and
    // forgets the undo history, which belonged to other code.
    Q_INVOKABLE void loaded();
    // The next edit becomes its own undo step instead of joining the typing before it.
    Q_INVOKABLE void beginUndoStep();

signals:
    void documentChanged();
    void hangingIndentChanged();
    void continuationsChanged();

private:
    QTextDocument *text() const;
    void watchLayout();
    void scheduleContinuations();
    void findContinuations();

    QPointer<QQuickTextDocument> m_document;
    qreal m_hangingIndent = 0;
    QList<QRectF> m_continuations;
    bool m_continuationsDue = false;
    QMetaObject::Connection m_layoutWatch;
    QMetaObject::Connection m_layoutSwap;
};
