#pragma once

#include "analysis/headerfields.h"
#include "analysis/quantity.h"
#include "model/value.h"

#include <QDateTime>
#include <QString>

#include <optional>

// Texts for tables: never the locale's decimal comma, and "-" for what is missing.

/// \a text without spaces at its ends, "-" if nothing is left.
QString formatText(const QString &text);
/// Whole numbers in full, others with six significant digits.
QString formatNumber(double value);
/// With \a decimals places and the unit: "61.2 m/s".
QString formatQuantity(const std::optional<Quantity> &quantity, int decimals);
/// "1:05.123", "1:02:03.456" from an hour on.
QString formatLapTime(std::optional<int> milliseconds);
/// A time span, for example until the work is done: "0:05", "12:34", "1:02:03".
QString formatDuration(qint64 seconds);
/// By how much one time is longer than another, to the millisecond: "+0.323", "-1.200", "0.000".
QString formatTimeDifference(double seconds);
/// "2024-05-31 18:30:00".
QString formatDateTime(const QDateTime &dateTime);
/// By the kind of value, with its unit: texts, numbers, times, dates, colours ("#rrggbb").
QString formatValue(const ZEP::Value &value);
/// The value of \a field; "yes" or "no" for what is true or not.
QString formatField(const HeaderField &field);
