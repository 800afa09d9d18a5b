#include "ui/studio/CodeHighlighter.h"

#include "language/LogoParser.h"
#include "ui/studio/LogoHighlighter.h"

#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>

CodeHighlighter::CodeHighlighter(QObject *parent) : QObject(parent)
{
}

CodeHighlighter::~CodeHighlighter() = default;

void CodeHighlighter::setDocument(QQuickTextDocument *document)
{
    if (m_document == document)
        return;
    delete m_highlighter;
    m_highlighter = nullptr;
    m_document = document;
    if (document && document->textDocument()) {
        m_highlighter = new LogoHighlighter(document->textDocument());
        setColors(m_colors);
    }
    emit documentChanged();
}

void CodeHighlighter::setColors(const QVariantMap &colors)
{
    const bool changed = m_colors != colors;
    m_colors = colors;
    if (m_highlighter) {
        QHash<QString, QColor> table;
        for (auto it = colors.cbegin(); it != colors.cend(); ++it)
            table.insert(it.key(), it.value().value<QColor>());
        m_highlighter->setColors(table);
    }
    if (changed)
        emit colorsChanged();
}

int CodeHighlighter::position(int line, int column) const
{
    if (!m_document)
        return -1;
    const QTextBlock block = m_document->textDocument()->findBlockByNumber(line);
    return block.isValid() ? block.position() + std::min(column, block.length() - 1) : -1;
}

QVariantMap CodeHighlighter::lineColumn(int position) const
{
    if (!m_document)
        return {};
    const QTextBlock block = m_document->textDocument()->findBlock(position);
    if (!block.isValid())
        return {};
    return {{QStringLiteral("line"), block.blockNumber()}, {QStringLiteral("column"), position - block.position()}};
}

QVariantMap CodeHighlighter::bracketPair(int position) const
{
    if (!m_document)
        return {};
    const QTextDocument *text = m_document->textDocument();
    // The character after the cursor first, then the one before it.
    for (const int at : {position, position - 1}) {
        const QChar c = text->characterAt(at);
        if (c != u'[' && c != u']')
            continue;
        const QVariantMap place = lineColumn(at);
        const LogoParser parsed(text->toPlainText());
        const SourcePlace bracket{place.value(QStringLiteral("line")).toInt(),
                                  place.value(QStringLiteral("column")).toInt(), 1};
        // A bracket inside a comment is no token, so it has no partner.
        const auto found = std::lower_bound(parsed.places.cbegin(), parsed.places.cend(), bracket,
                                            [](SourcePlace a, SourcePlace b) {
                                                return std::pair(a.line, a.column) < std::pair(b.line, b.column);
                                            });
        if (found == parsed.places.cend() || *found != bracket)
            continue;
        const qsizetype token = found - parsed.places.cbegin();
        const int step = c == u'[' ? 1 : -1;
        int depth = 0;
        for (qsizetype k = token; k >= 0 && k < parsed.tokens.size(); k += step) {
            if (parsed.tokens.at(k) == u"[")
                depth += step;
            else if (parsed.tokens.at(k) == u"]")
                depth -= step;
            if (depth == 0) {
                const SourcePlace match = parsed.places.at(k);
                return {{QStringLiteral("at"), at}, {QStringLiteral("match"), this->position(match.line, match.column)}};
            }
        }
        return {};
    }
    return {};
}
