#include "host/text/displaytext.h"

#include "analysis/laptime.h"

#include <QColor>
#include <QMetaType>

#include <cmath>

namespace {

QString missing()
{
    return QStringLiteral("-");
}

QString withUnit(const QString &number, const QString &unit)
{
    return unit.isEmpty() ? number : QString(number % QLatin1Char(' ') % unit);
}

} // namespace

QString formatText(const QString &text)
{
    const QString trimmed = text.trimmed();
    return trimmed.isEmpty() ? missing() : trimmed;
}

QString formatNumber(double value)
{
    constexpr double wholeBelow = 1e15;
    if (std::abs(value) < wholeBelow && value == std::trunc(value))
        return QString::number(static_cast<qint64>(value));
    return QString::number(value, 'g', 6);
}

QString formatQuantity(const std::optional<Quantity> &quantity, int decimals)
{
    if (!quantity)
        return missing();
    constexpr double fixedBelow = 1e7;
    const double value = quantity->value;
    // What rounds to zero loses its sign: "0.00", not "-0.00".
    const bool isZero = std::abs(value) < 0.5 * std::pow(10.0, -decimals);
    const QString number = std::abs(value) < fixedBelow
        ? QString::number(isZero ? 0.0 : value, 'f', decimals)
        : formatNumber(value);
    return withUnit(number, quantity->unit);
}

QString formatLapTime(std::optional<int> milliseconds)
{
    if (!milliseconds)
        return missing();
    constexpr int msPerHour = 60 * 60 * 1000;
    return QTime::fromMSecsSinceStartOfDay(*milliseconds)
        .toString(*milliseconds < msPerHour ? QStringLiteral("m:ss.zzz")
                                            : QStringLiteral("h:mm:ss.zzz"));
}

QString formatDuration(qint64 seconds)
{
    const auto twoDigits = [](qint64 number) {
        return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
    };
    const qint64 minutes = seconds / 60;
    const QString end = twoDigits(seconds % 60);
    return minutes < 60
        ? QStringLiteral("%1:%2").arg(minutes).arg(end)
        : QStringLiteral("%1:%2:%3").arg(minutes / 60).arg(twoDigits(minutes % 60), end);
}

QString formatTimeDifference(double seconds)
{
    QString text = QString::number(seconds, 'f', 3);
    if (text == QLatin1String("-0.000"))
        text.remove(0, 1);
    const bool isZero = text == QLatin1String("0.000");
    return seconds > 0 && !isZero ? QString(QLatin1Char('+') % text) : text;
}

QString formatDateTime(const QDateTime &dateTime)
{
    return dateTime.isValid() ? dateTime.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))
                              : missing();
}

QString formatValue(const ZEP::Value &value)
{
    const QVariant &variant = value.value;
    switch (variant.userType()) {
    case QMetaType::QTime:
        return formatLapTime(milliseconds(variant.toTime()));
    case QMetaType::QDateTime:
        return formatDateTime(variant.toDateTime());
    case QMetaType::QColor: {
        const QColor colour = variant.value<QColor>();
        return colour.isValid() ? colour.name() : missing();
    }
    case QMetaType::Float:
    case QMetaType::Double:
        return withUnit(formatNumber(variant.toDouble()), value.unit());
    default: {
        const QString text = formatText(variant.toString());
        return text == missing() ? text : withUnit(text, value.unit());
    }
    }
}

QString formatField(const HeaderField &field)
{
    if (field.value.userType() == QMetaType::Bool)
        return field.value.toBool() ? QStringLiteral("yes") : QStringLiteral("no");
    ZEP::Value value;
    value.value = field.value;
    return formatValue(value);
}
