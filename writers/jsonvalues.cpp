#include "writers/jsonvalues.h"

#include "analysis/headerfields.h"
#include "analysis/laptime.h"

#include <QColor>
#include <QJsonArray>
#include <QMetaType>

#include <cmath>

namespace {

QJsonObject withUnit(const QJsonValue &value, const QString &unit)
{
    return {{QStringLiteral("value"), value}, {QStringLiteral("unit"), unit}};
}

QJsonValue jsonVariant(const QVariant &variant)
{
    switch (variant.userType()) {
    case QMetaType::QTime:
        return jsonTime(milliseconds(variant.toTime()));
    case QMetaType::QDateTime:
        return jsonDateTime(variant.toDateTime());
    case QMetaType::QColor: {
        const QColor colour = variant.value<QColor>();
        return colour.isValid() ? QJsonValue(colour.name()) : QJsonValue();
    }
    case QMetaType::QString:
        return jsonText(variant.toString());
    default:
        return QJsonValue::fromVariant(variant);
    }
}

/// \a value with a text for each number that is infinite.
QJsonValue withoutInfinity(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Double:
        if (!std::isinf(value.toDouble()))
            return value;
        return value.toDouble() < 0 ? QStringLiteral("-inf") : QStringLiteral("inf");
    case QJsonValue::Array: {
        QJsonArray array;
        for (const QJsonValue &element : value.toArray())
            array.append(withoutInfinity(element));
        return array;
    }
    case QJsonValue::Object: {
        QJsonObject object;
        const QJsonObject old = value.toObject();
        for (auto member = old.begin(); member != old.end(); ++member)
            object.insert(member.key(), withoutInfinity(member.value()));
        return object;
    }
    default:
        return value;
    }
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
    return withUnit(jsonVariant(value.value), value.unit());
}

QByteArray jsonBytes(const QJsonValue &value, QJsonDocument::JsonFormat format)
{
    const QJsonValue finite = withoutInfinity(value);
    return finite.isArray() ? QJsonDocument(finite.toArray()).toJson(format)
                            : QJsonDocument(finite.toObject()).toJson(format);
}

QJsonObject headerJson(const ZEP::Lap &lap)
{
    QJsonObject header;
    for (const HeaderField &field : headerFields(lap))
        header.insert(field.key, jsonVariant(field.value));
    QJsonObject values;
    for (const QString &name : lap.valueNameList())
        values.insert(name, jsonValue(lap.DynamicData::value(name)));
    QJsonObject calculated;
    for (const QString &name : lap.calculatedValuesNames())
        calculated.insert(name, jsonValue(lap.calculatedValue(name)));
    return {{QStringLiteral("header"), header},
            {QStringLiteral("values"), values},
            {QStringLiteral("calculatedValues"), calculated}};
}
