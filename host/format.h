#pragma once

#include "host/lapsummary.h"
#include "model/value.h"

#include <QDateTime>
#include <QString>
#include <QTime>

#include <optional>

// Texts for tables: never the locale's decimal comma, and "-" for what is missing.

/// \a text without blanks at its ends, "-" if nothing is left.
QString formatText(const QString &text);
/// Whole numbers in full, others with six significant digits.
QString formatNumber(double value);
/// With \a decimals places and the unit: "61.2 m/s".
QString formatQuantity(const std::optional<Quantity> &quantity, int decimals);
/// "1:05.123", "1:02:03.456" from an hour on.
QString formatLapTime(std::optional<int> milliseconds);
/// The time since midnight; none for an invalid \a time.
std::optional<int> milliseconds(const QTime &time);
/// "2024-05-31 18:30:00".
QString formatDateTime(const QDateTime &dateTime);
/// By the kind of value, with its unit: texts, numbers, times, dates, colours ("#rrggbb").
QString formatValue(const ZEP::Value &value);
