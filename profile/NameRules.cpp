#include "profile/NameRules.h"

#include <QStringList>
#include <QTextBoundaryFinder>

namespace {

bool isDropped(char32_t c)
{
    const QChar::Category category = QChar::category(c);
    return (category == QChar::Other_Control || category == QChar::Other_Format) && !QChar::isSpace(c);
}

} // namespace

QString cleanName(const QString &text)
{
    QString kept;
    kept.reserve(text.size());
    QStringList words;
    const auto endWord = [&] {
        if (!kept.isEmpty())
            words.append(kept);
        kept.clear();
    };
    for (const char32_t c : text.toUcs4()) {
        if (QChar::isSpace(c))
            endWord();
        else if (!isDropped(c))
            kept.append(QString::fromUcs4(&c, 1));
    }
    endWord();
    return leftCharacters(words.join(u' '), maxNameLength);
}

int characterCount(const QString &text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    int count = 0;
    while (finder.toNextBoundary() > 0)
        ++count;
    return count;
}

QString leftCharacters(const QString &text, int count)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype end = 0;
    for (int i = 0; i < count; ++i) {
        const qsizetype next = finder.toNextBoundary();
        if (next < 0)
            return text;
        end = next;
    }
    return text.left(end);
}
