#pragma once

#include "turtle/Stroke.h"

#include <QObject>
#include <QUrl>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

// The constant tables of the curriculum as the screens read them, and small conversions
// that QML cannot do with C++ values on its own.
class Catalog : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QVariantList missions READ missions CONSTANT)
    Q_PROPERTY(QVariantList worlds READ worlds CONSTANT)
    // "1. Turtle Trail" and so on, as the world picker lists them.
    Q_PROPERTY(QStringList worldLabels READ worldLabels CONSTANT)
    Q_PROPERTY(QVariantList themes READ themes CONSTANT)
    Q_PROPERTY(QList<Stroke> noStrokes READ noStrokes CONSTANT)
    Q_PROPERTY(QList<Stroke> demoStrokes READ demoStrokes CONSTANT)

public:
    explicit Catalog(QObject *parent = nullptr);

    QVariantList missions() const { return m_missions; }
    QVariantList worlds() const { return m_worlds; }
    QStringList worldLabels() const { return m_worldLabels; }
    QVariantList themes() const { return m_themes; }
    QList<Stroke> noStrokes() const { return {}; }
    // The welcome tour's practice drawing: up 80, then right 80.
    QList<Stroke> demoStrokes() const;
    Q_INVOKABLE QList<Stroke> demoStrokesUpTo(int count) const { return demoStrokes().mid(0, count); }

    Q_INVOKABLE QString themeMenuLabel(int theme, int badges) const;
    Q_INVOKABLE QList<Stroke> joinStrokes(const QList<Stroke> &first, const QList<Stroke> &second) const;
    Q_INVOKABLE QString localPath(const QUrl &url) const;
    // The folder the picture export opens on, made if it is missing.
    Q_INVOKABLE QUrl exportFolder() const;
    Q_INVOKABLE QUrl fileIn(const QUrl &folder, const QString &name) const;
    // The picture's name in a choice of the save dialog, or "" when it names none: Qt's own
    // dialog also reports a folder the child clicks (with ".png" added) or nothing (just ".png").
    Q_INVOKABLE QString pictureName(const QUrl &choice) const;
    // Makes `file` the choice of Qt's own save dialog on screen, shown in its name field too;
    // false where the desktop's dialog is shown instead, which keeps the name by itself.
    Q_INVOKABLE bool selectInShownDialog(QObject *dialog, const QUrl &file) const;
    // The name field of Qt's own dialog on screen, or null where the desktop's dialog is shown.
    Q_INVOKABLE QObject *shownNameField(QObject *dialog) const;

    // The name rules, for fields that show them while the child types.
    Q_INVOKABLE QString cleanName(const QString &text) const;
    Q_INVOKABLE int characterCount(const QString &text) const;
    // The text cut to the longest name allowed, when it is longer.
    Q_INVOKABLE QString limitName(const QString &text) const;

private:
    QVariantList m_missions;
    QVariantList m_worlds;
    QStringList m_worldLabels;
    QVariantList m_themes;
};
