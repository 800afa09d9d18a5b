#pragma once

#include <QColor>
#include <QHash>
#include <QSet>
#include <QString>
#include <QSyntaxHighlighter>

// Colours one line of code at a time by what the language makes of each token; the names of
// recipes come from the whole document, since a recipe may be defined after its first call.
class LogoHighlighter : public QSyntaxHighlighter
{
public:
    explicit LogoHighlighter(QTextDocument *document);

    void setColors(const QHash<QString, QColor> &colors);

    // The role of a token, given the token before it on its line (both lower case).
    QString roleOf(const QString &token, const QString &previous) const;

protected:
    void highlightBlock(const QString &text) override;

private:
    void findRecipes();

    QHash<QString, QColor> m_colors;
    QSet<QString> m_recipes;
};
