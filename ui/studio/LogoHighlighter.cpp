#include "ui/studio/LogoHighlighter.h"

#include "language/LogoNumber.h"
#include "language/LogoParser.h"

#include <QPointer>
#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>
#include <utility>

namespace {

// A line's state when its last word is TO: the next word names a recipe.
constexpr int namingNext = 1;

} // namespace

// What one line adds to the whole: the recipe names it defines, and the words on it that may call one.
class LineWords : public QTextBlockUserData
{
public:
    explicit LineWords(LogoHighlighter *owner) : highlighter(owner) {}
    // A deleted line takes its definitions with it.
    ~LineWords() override
    {
        if (highlighter)
            highlighter->count(defined, -1);
    }

    QPointer<LogoHighlighter> highlighter;
    QStringList defined;
    QStringList words;
};

LogoHighlighter::LogoHighlighter(QTextDocument *document) : QSyntaxHighlighter(document)
{
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
    if (token == u"to" || token == u"end" || previous == u"to" || m_definitions.contains(token))
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
    const LogoParser line(text);
    if (!m_colors.isEmpty()) {
        for (const SourcePlace &comment : line.comments)
            setFormat(comment.column, comment.length, m_colors.value(QStringLiteral("comment")));
    }
    const bool named = previousBlockState() == namingNext;
    QString previous = named ? QStringLiteral("to") : QString();
    QStringList defined;
    QStringList words;
    for (qsizetype k = 0; k < line.tokens.size(); ++k) {
        const QString &token = line.tokens.at(k);
        if (previous == u"to")
            defined.append(token);
        const QString role = roleOf(token, previous);
        // A recipe coming or going changes only these words' colour.
        const bool alwaysRecipe = token == u"to" || token == u"end" || previous == u"to";
        if ((role == u"recipe" && !alwaysRecipe) || role == u"unknown" || role == u"color")
            words.append(token);
        if (!m_colors.isEmpty())
            setFormat(line.places.at(k).column, line.places.at(k).length, m_colors.value(role));
        previous = token;
    }
    setCurrentBlockState(previous == u"to" ? namingNext : 0);

    auto *data = static_cast<LineWords *>(currentBlockUserData());
    if (!data || data->highlighter != this) {
        data = new LineWords(this);
        setCurrentBlockUserData(data);
    }
    if (data->defined != defined) {
        count(data->defined, -1);
        data->defined = defined;
        count(defined, 1);
    }
    data->words = words;
}

void LogoHighlighter::count(const QStringList &names, int step)
{
    for (const QString &name : names) {
        const int lines = m_definitions[name] += step;
        if (lines == 0)
            m_definitions.remove(name);
        if (lines == 0 || (step > 0 && lines == 1)) {
            // Once the edit is over: lines cannot be coloured again while the document is changing.
            if (m_changed.isEmpty())
                QMetaObject::invokeMethod(this, &LogoHighlighter::recolourCallers, Qt::QueuedConnection);
            m_changed.insert(name);
        }
    }
}

void LogoHighlighter::recolourCallers()
{
    const QSet<QString> changed = std::exchange(m_changed, {});
    if (!document())
        return;
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        const auto *data = static_cast<const LineWords *>(block.userData());
        if (data && std::any_of(data->words.cbegin(), data->words.cend(),
                                [&](const QString &word) { return changed.contains(word); }))
            rehighlightBlock(block);
    }
}
