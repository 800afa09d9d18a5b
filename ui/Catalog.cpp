#include "Catalog.h"

#include "curriculum/Missions.h"
#include "curriculum/Themes.h"
#include "curriculum/Worlds.h"
#include "gallery/PictureExport.h"
#include "profile/NameRules.h"

#include <QDir>
#include <QFileInfo>

Catalog::Catalog(QObject *parent)
    : QObject(parent)
{
    for (const Mission &mission : ::missions()) {
        m_missions.append(QVariantMap{
            {QStringLiteral("title"), mission.title},
            {QStringLiteral("subtitle"), mission.subtitle},
            {QStringLiteral("goal"), mission.goal},
            {QStringLiteral("starter"), mission.starter},
            {QStringLiteral("hints"), mission.hints},
            {QStringLiteral("solution"), mission.solution},
            {QStringLiteral("prize"), mission.prize},
        });
    }
    for (const World &world : ::worlds()) {
        m_worldLabels.append(QString::number(m_worldLabels.size() + 1) + QStringLiteral(". ") + world.title);
        m_worlds.append(QVariantMap{
            {QStringLiteral("title"), world.title},
            {QStringLiteral("symbol"), world.symbol},
            {QStringLiteral("description"), world.description},
        });
    }
    for (const CanvasTheme &theme : ::themes()) {
        m_themes.append(QVariantMap{
            {QStringLiteral("name"), theme.name},
            {QStringLiteral("unlock"), theme.unlock},
            {QStringLiteral("color"), theme.color},
        });
    }
}

QString Catalog::themeMenuLabel(int theme, int badges) const
{
    if (theme < 0 || theme >= ::themes().size())
        return QString();
    return ::themeMenuLabel(::themes().at(theme), badges);
}

QList<Stroke> Catalog::joinStrokes(const QList<Stroke> &first, const QList<Stroke> &second) const
{
    return first + second;
}

QString Catalog::localPath(const QUrl &url) const
{
    return url.toLocalFile();
}

QUrl Catalog::exportFolder() const
{
    return QUrl::fromLocalFile(::exportFolder());
}

QUrl Catalog::fileIn(const QUrl &folder, const QString &name) const
{
    return QUrl::fromLocalFile(QDir(folder.toLocalFile()).filePath(name));
}

QString Catalog::fileName(const QUrl &file) const
{
    return QFileInfo(file.toLocalFile()).fileName();
}

bool Catalog::isFolderChoice(const QUrl &url) const
{
    const QString path = url.toLocalFile();
    const QString suffix = QStringLiteral(".png");
    return QFileInfo(path).isDir()
           || (path.endsWith(suffix, Qt::CaseInsensitive) && QFileInfo(path.chopped(suffix.size())).isDir());
}

QString Catalog::cleanName(const QString &text) const
{
    return ::cleanName(text);
}

int Catalog::characterCount(const QString &text) const
{
    return ::characterCount(text);
}

QString Catalog::limitName(const QString &text) const
{
    return leftCharacters(text, maxNameLength);
}

QList<Stroke> Catalog::demoStrokes() const
{
    const QString purple = QStringLiteral("purple");
    return {Stroke{QPointF(0, 0), QPointF(0, -80), purple, 4}, Stroke{QPointF(0, -80), QPointF(80, -80), purple, 4}};
}
