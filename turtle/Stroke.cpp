#include "turtle/Stroke.h"

#include <QJsonArray>

namespace {

QJsonArray pointToJson(QPointF point)
{
    return QJsonArray{point.x(), point.y()};
}

std::optional<QPointF> pointFromJson(const QJsonValue &value)
{
    const QJsonArray array = value.toArray();
    if (!value.isArray() || array.size() != 2 || !array.at(0).isDouble() || !array.at(1).isDouble())
        return std::nullopt;
    return QPointF(array.at(0).toDouble(), array.at(1).toDouble());
}

} // namespace

QJsonObject Stroke::toJson() const
{
    return QJsonObject{
        {QStringLiteral("from"), pointToJson(from)},
        {QStringLiteral("to"), pointToJson(to)},
        {QStringLiteral("color"), color},
        {QStringLiteral("width"), width},
    };
}

std::optional<Stroke> Stroke::fromJson(const QJsonObject &object)
{
    const auto from = pointFromJson(object.value(QStringLiteral("from")));
    const auto to = pointFromJson(object.value(QStringLiteral("to")));
    const QJsonValue color = object.value(QStringLiteral("color"));
    const QJsonValue width = object.value(QStringLiteral("width"));
    if (!from || !to || !color.isString() || !width.isDouble())
        return std::nullopt;
    return Stroke{*from, *to, color.toString(), width.toDouble()};
}
