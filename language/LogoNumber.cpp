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
    const QByteArray bytes = token.toUtf8();
    if (bytes.isEmpty() || isCSpace(bytes.front()))
        return std::nullopt;
    char *end = nullptr;
    const double value = strtod_l(bytes.constData(), &end, cLocale());
    if (end != bytes.constData() + bytes.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}
