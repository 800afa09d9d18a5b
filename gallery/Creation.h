#pragma once

#include "turtle/Stroke.h"

#include <QDateTime>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QUuid>

// A finished drawing kept with the program, the companion and the canvas that made it.
struct Creation
{
    Q_GADGET
    Q_PROPERTY(QUuid id MEMBER id)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString code MEMBER code)
    Q_PROPERTY(QDateTime date MEMBER date)
    Q_PROPERTY(int turtle MEMBER turtle)
    Q_PROPERTY(int theme MEMBER theme)
    Q_PROPERTY(QList<Stroke> strokes MEMBER strokes)

public:
    // A saved title keeps at most this many characters (as people count them).
    static constexpr int maxTitleLength = 80;

    // The title as screens show it: no longer than a save keeps it, however long the stored one.
    QString shownTitle() const;

    QUuid id = QUuid::createUuid();
    QString title;
    QString code;
    QDateTime date = QDateTime::currentDateTimeUtc();
    int turtle = 0;
    int theme = 0;
    QList<Stroke> strokes;

    bool operator==(const Creation &) const = default;
};

Q_DECLARE_METATYPE(Creation)
