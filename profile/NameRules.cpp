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
    // Only a prefix is looked at, so a huge text costs no more than a short one. A boundary
    // before the prefix's last character depends only on what comes before it and the next
    // character, so it is the same in the whole text; otherwise a longer prefix is tried.
    for (qsizetype look = 16 * qsizetype(count) + 16;; look *= 2) {
        const QString prefix = text.left(look);
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, prefix);
        qsizetype end = 0;
        for (int i = 0; i < count && end >= 0; ++i)
            end = finder.toNextBoundary();
        if (end >= 0 && end < prefix.size())
            return text.left(end);
        if (prefix.size() == text.size())
            return text;
    }
}
