#include "ui/studio/LogoHighlighter.h"

#include "language/LogoNumber.h"
#include "language/LogoParser.h"

#include <QTextBlock>
#include <QTextDocument>

LogoHighlighter::LogoHighlighter(QTextDocument *document) : QSyntaxHighlighter(document)
{
    findRecipes();
    // Connected after the highlighter's own handler: an edited line is coloured first, then
    // lines naming a recipe that came or went are coloured again.
    connect(document, &QTextDocument::contentsChange, this, &LogoHighlighter::findRecipes);
}

void LogoHighlighter::setColors(const QHash<QString, QColor> &colors)
{
    if (m_colors == colors)
        return;
    m_colors = colors;
    rehighlight();
}

QString LogoHighlighter::roleOf(const QString &token, const QString &previous) const
{
    if (token == u"[" || token == u"]")
        return QStringLiteral("bracket");
    if (token == u"repeat")
        return QStringLiteral("repeat");
    if (token == u"to" || token == u"end" || previous == u"to" || m_recipes.contains(token))
        return QStringLiteral("recipe");
    const QString command = LogoParser::aliases().value(token, token);
    if (LogoParser::isNumberCommand(command) || LogoParser::isPlainCommand(command) || command == u"color")
        return QStringLiteral("command");
    if (LogoParser::aliases().value(previous, previous) == u"color") {
        QString word = token;
        word.remove(u'"');
        return LogoParser::colorNames().contains(word) ? QStringLiteral("color") : QStringLiteral("unknown");
    }
    return readLogoNumber(token) ? QStringLiteral("number") : QStringLiteral("unknown");
}

void LogoHighlighter::highlightBlock(const QString &text)
{
    if (m_colors.isEmpty())
        return;
    const LogoParser line(text);
    for (const SourcePlace &comment : line.comments)
        setFormat(comment.column, comment.length, m_colors.value(QStringLiteral("comment")));
    for (qsizetype k = 0; k < line.tokens.size(); ++k) {
        const SourcePlace place = line.places.at(k);
        const QString role = roleOf(line.tokens.at(k), k > 0 ? line.tokens.at(k - 1) : QString());
        setFormat(place.column, place.length, m_colors.value(role));
    }
}

void LogoHighlighter::findRecipes()
{
    const LogoParser whole(document()->toPlainText());
    QSet<QString> recipes;
    for (qsizetype k = 0; k + 1 < whole.tokens.size(); ++k) {
        if (whole.tokens.at(k) == u"to")
            recipes.insert(whole.tokens.at(k + 1));
    }
    if (recipes == m_recipes)
        return;
    // Only the lines that mention a recipe that came or went change colour.
    const QSet<QString> changed = (recipes - m_recipes) + (m_recipes - recipes);
    m_recipes = recipes;
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        for (const QString &name : changed) {
            if (block.text().contains(name, Qt::CaseInsensitive)) {
                rehighlightBlock(block);
                break;
            }
        }
    }
}
