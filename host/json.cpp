#include "host/json.h"

#include "host/format.h"

#include <QColor>
#include <QMetaType>

namespace {

QJsonObject withUnit(const QJsonValue &value, const QString &unit)
{
    return {{QStringLiteral("value"), value}, {QStringLiteral("unit"), unit}};
}

} // namespace

QJsonValue jsonText(const QString &text)
{
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

QJsonValue jsonTime(std::optional<int> milliseconds)
{
    return milliseconds ? QJsonValue(*milliseconds / 1000.0) : QJsonValue();
}

QJsonValue jsonDateTime(const QDateTime &dateTime)
{
    return dateTime.isValid() ? QJsonValue(dateTime.toString(Qt::ISODateWithMs)) : QJsonValue();
}

QJsonValue jsonQuantity(const std::optional<Quantity> &quantity)
{
    return quantity ? QJsonValue(withUnit(quantity->value, quantity->unit)) : QJsonValue();
}

QJsonObject jsonValue(const ZEP::Value &value)
{
    const QVariant &variant = value.value;
    switch (variant.userType()) {
    case QMetaType::QTime:
        return withUnit(jsonTime(milliseconds(variant.toTime())), value.unit());
    case QMetaType::QDateTime:
        return withUnit(jsonDateTime(variant.toDateTime()), value.unit());
    case QMetaType::QColor: {
        const QColor colour = variant.value<QColor>();
        return withUnit(colour.isValid() ? QJsonValue(colour.name()) : QJsonValue(), value.unit());
    }
    case QMetaType::QString:
        return withUnit(jsonText(variant.toString()), value.unit());
    default:
        return withUnit(QJsonValue::fromVariant(variant), value.unit());
    }
}
