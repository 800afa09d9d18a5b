#include "ui/screens/CreationModel.h"

#include "curriculum/Themes.h"

#include <QRegularExpression>

#include <algorithm>

CreationModel::CreationModel(QObject *parent) : QAbstractListModel(parent) {}

void CreationModel::setStudio(Studio *studio)
{
    if (m_studio == studio)
        return;
    if (m_studio)
        disconnect(m_studio, nullptr, this, nullptr);
    m_studio = studio;
    if (m_studio)
        connect(m_studio, &Studio::creationsChanged, this, &CreationModel::reload);
    reload();
    emit studioChanged();
}

int CreationModel::count() const
{
    return int(m_creations.size());
}

void CreationModel::reload()
{
    const qsizetype before = m_creations.size();
    beginResetModel();
    m_creations = m_studio ? m_studio->creations() : QList<Creation>();
    endResetModel();
    if (m_creations.size() != before)
        emit countChanged();
}

int CreationModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant CreationModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Creation &creation = m_creations.at(index.row());
    switch (role) {
    case TitleRole:
        return creation.shownTitle();
    case DateTextRole:
        return dateText(creation.date);
    case ThemeColorRole:
        return themes().at(clampedTheme(creation.theme)).color;
    case StrokesRole:
        return QVariant::fromValue(creation.strokes);
    default:
        return {};
    }
}

QHash<int, QByteArray> CreationModel::roleNames() const
{
    return {
        {TitleRole, "title"},
        {DateTextRole, "dateText"},
        {ThemeColorRole, "themeColor"},
        {StrokesRole, "strokes"},
    };
}

void CreationModel::open(int row)
{
    if (!m_studio || row < 0 || row >= count())
        return;
    // A copy: reopening may change the list this row lives in.
    const Creation creation = m_creations.at(row);
    m_studio->openCreation(creation);
}

QString CreationModel::dateText(const QDateTime &date, const QLocale &locale)
{
    // The locale's long date without the weekday and with the month abbreviated ("Mar 5, 2024"),
    // and its short time without seconds ("2:07 PM").
    static const QRegularExpression weekday(QStringLiteral("dddd[,،]?\\s*"));
    static const QRegularExpression seconds(QStringLiteral("[:.]ss"));
    QString dateFormat = locale.dateFormat(QLocale::LongFormat);
    dateFormat.remove(weekday);
    dateFormat.replace(QStringLiteral("MMMM"), QStringLiteral("MMM"));
    QString timeFormat = locale.timeFormat(QLocale::ShortFormat);
    timeFormat.remove(seconds);
    const QDateTime local = date.toLocalTime();
    return locale.toString(local, dateFormat.trimmed()) + QStringLiteral(", ") + locale.toString(local, timeFormat);
}

int CreationModel::clampedTheme(int theme)
{
    return std::clamp(theme, 0, int(themes().size()) - 1);
}
