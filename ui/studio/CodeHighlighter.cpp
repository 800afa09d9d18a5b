#include "ui/studio/CodeHighlighter.h"

#include "language/LogoParser.h"
#include "ui/studio/LogoHighlighter.h"

#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>
#include <optional>

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
        // No token spans a line break, so brackets are counted line by line, outwards from this
        // one, and typing in a long program reads only the lines between the pair.
        QTextBlock block = text->findBlock(at);
        std::optional<LogoParser> line(std::in_place, block.text());
        const auto found = std::find(line->places.cbegin(), line->places.cend(),
                                     SourcePlace{0, at - block.position(), 1});
        // A bracket inside a comment is no token, so it has no partner.
        if (found == line->places.cend())
            continue;
        const int step = c == u'[' ? 1 : -1;
        qsizetype k = found - line->places.cbegin();
        int depth = 0;
        while (true) {
            for (; k >= 0 && k < line->tokens.size(); k += step) {
                if (line->tokens.at(k) == u"[")
                    depth += step;
                else if (line->tokens.at(k) == u"]")
                    depth -= step;
                if (depth == 0)
                    return {{QStringLiteral("at"), at},
                            {QStringLiteral("match"), block.position() + line->places.at(k).column}};
            }
            block = step > 0 ? block.next() : block.previous();
            if (!block.isValid())
                return {};
            line.emplace(block.text());
            k = step > 0 ? 0 : line->tokens.size() - 1;
        }
    }
    return {};
}
