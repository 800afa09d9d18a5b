#pragma once

#include <QJsonObject>
#include <QList>
#include <QMetaType>
#include <QPointF>
#include <QString>

#include <optional>

// One straight segment the turtle drew, in turtle units.
struct Stroke
{
    Q_GADGET
    Q_PROPERTY(QPointF from MEMBER from)
    Q_PROPERTY(QPointF to MEMBER to)
    Q_PROPERTY(QString color MEMBER color)
    Q_PROPERTY(double width MEMBER width)

public:
    QPointF from;
    QPointF to;
    QString color;
    double width = 4;

    bool operator==(const Stroke &) const = default;

    QJsonObject toJson() const;
    // All four keys are required; anything else gives nullopt.
    static std::optional<Stroke> fromJson(const QJsonObject &object);
};

Q_DECLARE_METATYPE(Stroke)
