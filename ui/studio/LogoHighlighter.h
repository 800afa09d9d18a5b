#pragma once

#include <QColor>
#include <QHash>
#include <QSet>
#include <QString>
#include <QSyntaxHighlighter>

// Colours one line of code at a time by what the language makes of each token. A recipe may be
// defined after its first call, so each line keeps the names it defines and the words that may
// call one; a line that ends with TO hands the naming on to the next. Typing therefore colours
// the edited line only, plus the lines that call a recipe that came or went.
class LogoHighlighter : public QSyntaxHighlighter
{
public:
    explicit LogoHighlighter(QTextDocument *document);

    void setColors(const QHash<QString, QColor> &colors);

    // The role of a token, given the token before it (both lower case).
    QString roleOf(const QString &token, const QString &previous) const;

protected:
    void highlightBlock(const QString &text) override;

private:
    friend class LineWords;
    // Counts a line's definitions in (+1) or out (-1).
    void count(const QStringList &names, int step);
    void recolourCallers();

    QHash<QString, QColor> m_colors;
    // How many lines define each recipe name.
    QHash<QString, int> m_definitions;
    // Names that became or stopped being recipes since the callers were last coloured again.
    QSet<QString> m_changed;
};
