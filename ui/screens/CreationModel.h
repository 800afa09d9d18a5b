#pragma once

#include "app/Studio.h"

#include <QAbstractListModel>
#include <QDateTime>
#include <QLocale>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

// The gallery's creations as the grid shows them. Kept in C++ so that hundreds of cards cost
// no conversion to script values, and each card reads only the few values it paints.
class CreationModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(Studio *studio READ studio WRITE setStudio NOTIFY studioChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role {
        TitleRole = Qt::UserRole + 1,
        DateTextRole,
        ThemeColorRole,
        StrokesRole,
    };

    explicit CreationModel(QObject *parent = nullptr);

    Studio *studio() const { return m_studio; }
    void setStudio(Studio *studio);
    int count() const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    // Reopens the creation at `row` in the studio; a row outside the list does nothing.
    Q_INVOKABLE void open(int row);

    // An abbreviated date and a short time in the given locale, e.g. "Mar 5, 2024, 2:07 PM".
    static QString dateText(const QDateTime &date, const QLocale &locale = QLocale());
    // The index into the theme table, so a theme that no longer exists still has a colour.
    static int clampedTheme(int theme);

signals:
    void studioChanged();
    void countChanged();

private:
    void reload();

    QPointer<Studio> m_studio;
    QList<Creation> m_creations;
};
