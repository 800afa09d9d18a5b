#include "language/LogoNumber.h"

#include <QByteArray>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <locale.h>

namespace {

locale_t cLocale()
{
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return locale;
}

bool isCSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

} // namespace

std::optional<double> readLogoNumber(QStringView token)
{
    // Most numbers in a program are a few plain digits; those need no conversion by the C library.
    if (!token.isEmpty() && token.size() <= 9) {
        // Nine digits stay below 10^9, so the sum cannot overflow; a word stops at its first letter.
        qint32 whole = 0;
        bool digits = true;
        for (const QChar c : token) {
            digits = c >= u'0' && c <= u'9';
            if (!digits)
                break;
            whole = whole * 10 + (c.unicode() - u'0');
        }
        if (digits)
            return double(whole);
    }
    // Numbers are short and ASCII: read them from the stack, not a fresh allocation.
    char small[64];
    QByteArray large;
    if (token.isEmpty())
        return std::nullopt;
    char *buffer = small;
    if (token.size() >= qsizetype(sizeof small)) {
        large.resize(token.size() + 1);
        buffer = large.data();
    }
    for (qsizetype i = 0; i < token.size(); ++i) {
        const char16_t c = token.at(i).unicode();
        if (c == 0 || c >= 0x80) // no number has these; a NUL would also end the text early
            return std::nullopt;
        buffer[i] = char(c);
    }
    buffer[token.size()] = '\0';
    if (isCSpace(buffer[0]))
        return std::nullopt;
    char *end = nullptr;
    const double value = strtod_l(buffer, &end, cLocale());
    if (end != buffer + token.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}
