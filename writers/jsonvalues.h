#pragma once

#include "analysis/quantity.h"
#include "model/lap.h"
#include "model/value.h"

#include <QByteArray>
#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>

#include <optional>

// Values for JSON: numbers stay numbers, and null is what is missing. docs/json.md says what
// scripts may rely on.

/// A text as it is; null if it is empty.
QJsonValue jsonText(const QString &text);
/// Seconds.
QJsonValue jsonTime(std::optional<int> milliseconds);
/// ISO 8601.
QJsonValue jsonDateTime(const QDateTime &dateTime);
/// An object of "value" and "unit".
QJsonValue jsonQuantity(const std::optional<Quantity> &quantity);
/// An object of "value" and "unit"; times in seconds, dates in ISO 8601, colours as "#rrggbb".
QJsonObject jsonValue(const ZEP::Value &value);

/// An array or object as text for scripts. JSON has no number for infinity, and parsers differ in
/// what they make of one that is too large, so it is the text "-inf" or "inf"; what is not a number
/// is null.
QByteArray jsonBytes(const QJsonValue &value,
                     QJsonDocument::JsonFormat format = QJsonDocument::Indented);

/// Everything about \a lap except its channels: an object "header" of headerFields(), and objects
/// "values" and "calculatedValues" of jsonValue() by name.
QJsonObject headerJson(const ZEP::Lap &lap);
