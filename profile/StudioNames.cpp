#include "app/Studio.h"

#include "profile/NameRules.h"

QString Studio::cleanTurtleName(const QString &text)
{
    return cleanName(text);
}

QString Studio::displayName(int index) const
{
    if (index < 0 || index >= m_names.size())
        return m_names.first();
    const QString nickname = cleanName(m_turtleNames.value(QString::number(index)));
    return nickname.isEmpty() ? m_names.at(index) : nickname;
}

QString Studio::turtleName() const
{
    return displayName(m_turtle);
}
