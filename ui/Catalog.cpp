#include "Catalog.h"

#include "curriculum/Missions.h"
#include "curriculum/Themes.h"
#include "curriculum/Worlds.h"
#include "gallery/PictureExport.h"
#include "profile/NameRules.h"

#include <QDir>
#include <QFileInfo>
#include <QQmlEngine>

#include <algorithm>

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

QString Catalog::pictureName(const QUrl &choice) const
{
    // A name typed into Qt's own dialog comes back as a bare path, without "file:".
    const QString path = choice.isLocalFile() ? choice.toLocalFile()
                         : choice.scheme().isEmpty() && QDir::isAbsolutePath(choice.path()) ? choice.path()
                                                                                             : QString();
    for (const QLatin1String suffix : {QLatin1String(".png"), QLatin1String(".svg")}) {
        if (path.endsWith(suffix, Qt::CaseInsensitive) && QFileInfo(path.chopped(suffix.size())).isDir())
            return {};
    }
    const QFileInfo chosen(path);
    return chosen.isDir() ? QString() : chosen.fileName();
}

namespace {

// Qt's own file dialog on screen for `dialog`: it lives beside the studio in its window.
QObject *shownFileDialog(QObject *dialog)
{
    auto *window = dialog ? dialog->property("parentWindow").value<QObject *>() : nullptr;
    const QList<QObject *> parts = window ? window->findChildren<QObject *>() : QList<QObject *>();
    const auto shown = std::find_if(parts.cbegin(), parts.cend(), [](const QObject *part) {
        return part->inherits("QQuickFileDialogImpl") && part->property("visible").toBool();
    });
    return shown != parts.cend() ? *shown : nullptr;
}

} // namespace

bool Catalog::selectInShownDialog(QObject *dialog, const QUrl &file) const
{
    QObject *shown = shownFileDialog(dialog);
    return shown && shown->setProperty("selectedFile", file);
}

QObject *Catalog::shownNameField(QObject *dialog) const
{
    QObject *shown = shownFileDialog(dialog);
    QObject *field = shown ? shown->findChild<QObject *>(QStringLiteral("fileNameTextField")) : nullptr;
    // The dialog owns its field; a script holding it must not delete it.
    if (field)
        QQmlEngine::setObjectOwnership(field, QQmlEngine::CppOwnership);
    return field;
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
