#pragma once

#include <QMetaType>
#include <QString>
#include <QStringList>

// One drawing task. Known only by its index in missions(); it is never saved.
struct Mission
{
    Q_GADGET
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString subtitle MEMBER subtitle)
    Q_PROPERTY(QString goal MEMBER goal)
    Q_PROPERTY(QString starter MEMBER starter)
    Q_PROPERTY(QStringList hints MEMBER hints)
    Q_PROPERTY(QString solution MEMBER solution)
    Q_PROPERTY(QString prize MEMBER prize)

public:
    QString title;
    QString subtitle;
    QString goal;
    // Put in the editor when there is no saved code; need not parse.
    QString starter;
    // Always two, revealed one at a time.
    QStringList hints;
    // The target drawing is what this draws.
    QString solution;
    // The badge earned on the first success.
    QString prize;
};

Q_DECLARE_METATYPE(Mission)

// A mission whose second hint shows the solution itself.
Mission lesson(const QString &title, const QString &subtitle, const QString &goal, const QString &starter,
               const QString &hint, const QString &solution, const QString &prize);
