#pragma once

#include <QColor>
#include <QObject>
#include <QPointer>
#include <QQuickTextDocument>
#include <QSet>
#include <QString>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

class LogoHighlighter;

// Colours the code editor's text with the language's own tokenizer, and maps the language's
// places (line, column) to editor positions and back.
class CodeHighlighter : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickTextDocument *document READ document WRITE setDocument NOTIFY documentChanged)
    // Role name -> colour: command, number, color, repeat, bracket, recipe, comment, unknown.
    Q_PROPERTY(QVariantMap colors READ colors WRITE setColors NOTIFY colorsChanged)

public:
    explicit CodeHighlighter(QObject *parent = nullptr);
    ~CodeHighlighter() override;

    QQuickTextDocument *document() const { return m_document; }
    void setDocument(QQuickTextDocument *document);
    const QVariantMap &colors() const { return m_colors; }
    void setColors(const QVariantMap &colors);

    // The editor position of a place's start, or -1 when the text has no such line.
    Q_INVOKABLE int position(int line, int column) const;
    // {line, column} of an editor position.
    Q_INVOKABLE QVariantMap lineColumn(int position) const;
    // The position of the bracket matching the one just before or after `position`, and that
    // bracket's own position, as {at, match}; empty when the cursor is at no bracket or it has no partner.
    Q_INVOKABLE QVariantMap bracketPair(int position) const;

signals:
    void documentChanged();
    void colorsChanged();

private:
    QPointer<QQuickTextDocument> m_document;
    QVariantMap m_colors;
    LogoHighlighter *m_highlighter = nullptr;
};
