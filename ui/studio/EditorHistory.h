#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickTextDocument>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

// Keeps the editor's undo history from holding huge texts for good: after an edit that adds or
// removes a great many characters (a big paste, or selecting it all and typing over it), the
// history is started afresh, which also lets the document drop the text it kept for undoing.
class EditorHistory : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickTextDocument *document READ document WRITE setDocument NOTIFY documentChanged)

public:
    // Characters added and removed by one edit beyond which its undo step is not kept.
    static constexpr int hugeEdit = 10000;

    explicit EditorHistory(QObject *parent = nullptr);

    QQuickTextDocument *document() const { return m_document; }
    void setDocument(QQuickTextDocument *document);

signals:
    void documentChanged();

private:
    void forget();
    void release();

    QPointer<QQuickTextDocument> m_document;
    bool m_forgetting = false;
    bool m_shrunk = false;
    QTimer m_release;
};
