#include "tests/support/comparelaps.h"

#include "tests/support/samebits.h"

#include <QColor>
#include <QStringList>

namespace {

QString hex(quint64 number)
{
    return QString::number(number, 16);
}

/// Type and value of a variant. Date-times are the moment of the import, so all count as equal.
QString describe(const QVariant &variant)
{
    QString text = variant.toString();
    if (variant.userType() == QMetaType::Double)
        text += QLatin1String(" 0x") + hex(bitsOf(variant.value<double>()));
    else if (variant.userType() == QMetaType::Float)
        text += QLatin1String(" 0x") + hex(bitsOf(variant.value<float>()));
    else if (variant.userType() == QMetaType::QColor)
        text = variant.value<QColor>().isValid() ? variant.value<QColor>().name(QColor::HexArgb)
                                                 : QStringLiteral("no color");
    else if (variant.userType() == QMetaType::QDateTime)
        text = QStringLiteral("now");
    return QLatin1String(variant.isValid() ? variant.typeName() : "invalid")
        + QLatin1String(variant.isNull() ? " null " : " ") + text;
}

/// True if both are described the same; most are, and are compared without the texts.
bool sameVariant(const QVariant &actual, const QVariant &expected)
{
    if (actual.userType() != expected.userType() || actual.isNull() != expected.isNull())
        return false;
    switch (actual.userType()) {
    case QMetaType::Double:
        return sameBits(actual.value<double>(), expected.value<double>());
    case QMetaType::Float:
        return sameBits(actual.value<float>(), expected.value<float>());
    case QMetaType::QString:
        return actual.value<QString>() == expected.value<QString>();
    default:
        return describe(actual) == describe(expected);
    }
}

template <typename T>
QString fieldDifference(const char *field, const T &actual, const T &expected)
{
    if (actual == expected)
        return QString();
    return QStringLiteral("%1 is \"%2\" instead of \"%3\"")
        .arg(QLatin1String(field), QVariant(actual).toString(), QVariant(expected).toString());
}

QString namesDifference(const char *what, const QStringList &actual, const QStringList &expected)
{
    for (const QString &name : actual) {
        if (!expected.contains(name))
            return QStringLiteral("%1 \"%2\" should not exist").arg(QLatin1String(what), name);
    }
    for (const QString &name : expected) {
        if (!actual.contains(name))
            return QStringLiteral("%1 \"%2\" is missing").arg(QLatin1String(what), name);
    }
    return actual == expected ? QString() : QStringLiteral("%1s: order").arg(QLatin1String(what));
}

/// Compares named values; \a valueOf returns the product's value of a name.
template <typename ValueOf>
QString valuesDifference(const char *what, const QStringList &names, ValueOf valueOf,
                         const reference::Values &expected)
{
    const QString difference = namesDifference(what, names, expected.keys());
    if (!difference.isEmpty())
        return difference;
    for (const QString &name : names) {
        const ZEP::Value value = valueOf(name);
        const reference::Value other = expected.value(name);
        if (sameVariant(value.value, other.value) && value.unit() == other.unit)
            continue;
        const QString is = describe(value.value) + QLatin1String(" in ") + value.unit();
        const QString shouldBe = describe(other.value) + QLatin1String(" in ") + other.unit;
        if (is != shouldBe)
            return QStringLiteral("%1 \"%2\": %3 instead of %4")
                .arg(QLatin1String(what), name, is, shouldBe);
    }
    return QString();
}

/// True for channels that were calculated, not copied from the recording.
bool isCalculated(const QString &name)
{
    static const QStringList names = {QStringLiteral("fuelweight"),
                                      QStringLiteral("dt"),
                                      QStringLiteral("lapdist"),
                                      QStringLiteral("speed"),
                                      QStringLiteral("Yaw"),
                                      QStringLiteral("lapcurrentlaptime"),
                                      QStringLiteral("energybatterytomgu_klap"),
                                      QStringLiteral("energymgu_klapdeploypct")};
    return names.contains(name);
}

/// If both operands are NaN, it depends on the processor which of them is the result.
QVector<double> withOneNaN(QVector<double> samples)
{
    for (double &sample : samples) {
        if (qIsNaN(sample))
            sample = qQNaN();
    }
    return samples;
}

/// Compares channels; \a channelOf returns the product's channel of a name.
template <typename ChannelOf>
QString channelsDifference(const char *what, const QStringList &names, ChannelOf channelOf,
                           const reference::Lap::Channels &expected)
{
    QString difference = namesDifference(what, names, expected.keys());
    for (int i = 0; i < names.size() && difference.isEmpty(); ++i) {
        const QSharedPointer<ZEP::Channel> channel = channelOf(names.at(i));
        const reference::Channel &other = *expected.value(names.at(i));
        difference = fieldDifference("unit", channel->unit(), other.unit);
        if (difference.isEmpty()) {
            difference = isCalculated(names.at(i))
                ? bitDifference(withOneNaN(channel->data), withOneNaN(other.data))
                : bitDifference(channel->data, other.data);
        }
        if (!difference.isEmpty())
            return QStringLiteral("%1 \"%2\": %3")
                .arg(QLatin1String(what), names.at(i), difference);
    }
    return difference;
}

QString firstOf(std::initializer_list<QString> differences)
{
    for (const QString &difference : differences) {
        if (!difference.isEmpty())
            return difference;
    }
    return QString();
}

} // namespace

QString LapComparison::difference(const QUuid &id, const QUuid &expected)
{
    if (id.isNull() != expected.isNull())
        return id.isNull() ? QStringLiteral("id is null") : QStringLiteral("id is not null");
    if (id.isNull())
        return QString();
    if (!m_expectedIds.contains(id) && !m_ids.contains(expected)) {
        m_expectedIds.insert(id, expected);
        m_ids.insert(expected, id);
    }
    if (m_expectedIds.value(id) == expected && m_ids.value(expected) == id)
        return QString();
    return QStringLiteral("id belongs to another lap or stint");
}

QString LapComparison::headerDifference(const ZEP::Lap &lap, const reference::Lap &expected)
{
    return firstOf({
        fieldDifference("date", lap.getDateTime(), expected.dateTime),
        fieldDifference("driver", lap.getDriverName(), expected.driverName),
        fieldDifference("track", lap.getTrackName(), expected.trackName),
        fieldDifference("track configuration", lap.getTrackConfig(), expected.trackConfig),
        fieldDifference("car", lap.getCarName(), expected.carName),
        fieldDifference("file", lap.getFileName(), expected.fileName),
        fieldDifference("lap time", lap.getLapTime(), expected.lapTime),
        fieldDifference("source", lap.getSource(), expected.source),
        fieldDifference("plug-in", lap.getPlugin(), expected.plugin),
        fieldDifference("car id", describe(lap.getCarId()), describe(expected.carId)),
        fieldDifference("session id", lap.getSessionId(), expected.sessionId),
        fieldDifference("lap in session", lap.getLapInSession(), expected.lapInSession),
        fieldDifference("lap in stint", lap.getLapInStint(), expected.lapInStint),
        fieldDifference("stint in session", lap.getStintInSession(), expected.stintInSession),
        fieldDifference("session", int(lap.getSession()), expected.session),
        fieldDifference("lap type", int(lap.getLapType()), expected.lapType),
        fieldDifference("completed", lap.getCompleted(), expected.completed),
    });
}

QString LapComparison::difference(const ZEP::Lap &lap, const reference::Lap &expected)
{
    const auto value = [&lap](const QString &name) { return lap.DynamicData::value(name); };
    const auto calculated = [&lap](const QString &name) { return lap.calculatedValue(name); };
    const auto channel = [&lap](const QString &name) { return lap.channel(name); };
    const auto calculatedChannel = [&lap](const QString &name) {
        return lap.calculatedChannel(name);
    };

    const QString lapId = difference(lap.getLapId(), expected.lapId);
    const QString stintId = difference(lap.getStintId(), expected.stintId);
    return firstOf({
        headerDifference(lap, expected),
        lapId.isEmpty() ? lapId : QStringLiteral("lap ") + lapId,
        stintId.isEmpty() ? stintId : QStringLiteral("stint ") + stintId,
        valuesDifference("value", lap.valueNameList(), value, expected.values),
        valuesDifference("calculated value", lap.calculatedValuesNames(), calculated,
                         expected.calculatedValues),
        channelsDifference("channel", lap.getAvailableChannels(), channel, expected.channels),
        channelsDifference("calculated channel", lap.getAvailableCalculatedChannels(),
                           calculatedChannel, expected.calculatedChannels),
    });
}

QString LapComparison::difference(const QVector<ZEP::Lap *> &laps,
                                  const QVector<reference::Lap> &expected)
{
    for (int i = 0; i < qMin(laps.size(), expected.size()); ++i) {
        const QString found = difference(*laps.at(i), expected.at(i));
        if (!found.isEmpty())
            return QStringLiteral("lap %1 of %2: %3").arg(i).arg(laps.size()).arg(found);
    }
    return fieldDifference("number of laps", laps.size(), expected.size());
}

QString LapComparison::difference(const ZEP::Sample &sample, const reference::Sample &expected)
{
    const auto value = [&sample](const QString &name) { return sample.value(name); };
    return firstOf({
        fieldDifference("car id", describe(sample.carId()), describe(expected.carId)),
        valuesDifference("value", sample.valueNameList(), value, expected.values),
    });
}

QString sharingDifference(const QVector<ZEP::Lap *> &laps, const QVector<reference::Lap> &expected)
{
    // A channel is identified by the first place where it occurs.
    QHash<const ZEP::Channel *, QString> places;
    QHash<const reference::Channel *, QString> expectedPlaces;
    for (int i = 0; i < qMin(laps.size(), expected.size()); ++i) {
        for (const QString &name : laps.at(i)->getAvailableChannels()) {
            const ZEP::Channel *channel = laps.at(i)->channel(name).data();
            const reference::Channel *other = expected.at(i).channel(name).data();
            const QString here = QStringLiteral("lap %1, channel \"%2\"").arg(i).arg(name);
            if (!places.contains(channel))
                places.insert(channel, here);
            if (!expectedPlaces.contains(other))
                expectedPlaces.insert(other, here);
            if (places.value(channel) != expectedPlaces.value(other)) {
                return QStringLiteral("%1 is shared with %2 instead of %3")
                    .arg(here, places.value(channel), expectedPlaces.value(other));
            }
        }
    }
    return QString();
}
