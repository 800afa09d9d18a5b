#include "app/Studio.h"

#include "curriculum/Missions.h"
#include "curriculum/Progress.h"
#include "profile/NameRules.h"
#include "profile/PreferencesStore.h"

QString Studio::cleanTurtleName(const QString &text)
{
    return cleanName(text);
}

bool Studio::isTurtleUnlocked(int index) const
{
    if (index < 0 || index >= m_names.size())
        return false;
    return index != royalCompanion || badges() >= royalBadges;
}

bool Studio::needsIntroduction() const
{
    return !m_hasCompletedWelcome || m_playerName.isEmpty();
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

QStringList Studio::shownNames() const
{
    QStringList shown;
    for (int index = 0; index < m_names.size(); ++index)
        shown.append(displayName(index));
    return shown;
}

bool Studio::saveCompanion(int index, const QString &name)
{
    const QString cleaned = cleanName(name);
    if (!isTurtleUnlocked(index) || cleaned.isEmpty())
        return false;
    // Only this companion's entry changes; names another window gave since start-up are kept.
    QMap<QString, QString> names = m_turtleNames;
    m_defaults.update(QStringLiteral("turtleNames"), [&](const QVariant &stored) -> std::optional<QVariant> {
        if (const auto theirs = PreferencesStore::asStringDictionary(stored)) {
            for (auto it = theirs->cbegin(); it != theirs->cend(); ++it)
                names.insert(it.key(), it.value());
        }
        names.insert(QString::number(index), cleaned);
        return PreferencesStore::stringDictionaryValue(names);
    });
    setTurtleNames(names);
    setTurtle(index);
    setMessage(turtleName() + QStringLiteral(" is ready for your next idea."));
    return true;
}

bool Studio::savePlayerName(const QString &name)
{
    const QString cleaned = cleanName(name);
    if (cleaned.isEmpty())
        return false;
    setPlayerName(cleaned);
    m_defaults.setString(QStringLiteral("playerName"), cleaned);
    setMessage(QStringLiteral("Ready when you are, ") + m_playerName + u'.');
    return true;
}

void Studio::finishWelcome(int index, const QString &name, const QString &player)
{
    if (cleanName(player).isEmpty() || cleanName(name).isEmpty() || !isTurtleUnlocked(index))
        return;
    const bool firstTime = needsIntroduction();
    if (!saveCompanion(index, name) || !savePlayerName(player))
        return;
    setHasCompletedWelcome(true);
    m_defaults.setBoolean(QStringLiteral("hasCompletedWelcome"), true);
    setWelcome(false);
    if (firstTime) {
        int start = -1;
        for (int i = 0; i < missions().size() && start < 0; ++i) {
            if (!m_completed.contains(i) && (i == 0 || m_completed.contains(i - 1)))
                start = i;
        }
        if (start >= 0)
            select(start);
        else
            enterFree();
    }
    setMessage(m_playerName + QStringLiteral(" and ") + turtleName() + QStringLiteral(". Let’s make something!"));
}

void Studio::replayWelcome()
{
    stop();
    setWelcome(true);
}

QString Studio::worldTitle() const
{
    return m_playerName.isEmpty() ? QStringLiteral("YOUR WORLD OF CODE") : m_playerName + QStringLiteral("’S WORLD OF CODE");
}

QString Studio::galleryTitle() const
{
    return m_playerName.isEmpty() ? QStringLiteral("Made by you") : QStringLiteral("Made by ") + m_playerName;
}

QString Studio::treasureTitle() const
{
    return m_playerName.isEmpty() ? QStringLiteral("Your treasure shelf") : m_playerName + QStringLiteral("’s treasure shelf");
}

QString Studio::avatarLetter() const
{
    if (m_playerName.isEmpty())
        return QStringLiteral("?");
    return leftCharacters(m_playerName, 1).toUpper();
}
