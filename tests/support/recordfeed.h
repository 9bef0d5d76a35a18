// Hands records to the reader as a caller does, and compares the values that result.
#pragma once

#include "tests/support/samebits.h"
#include "tests/support/twocars.h"
#include "tools/recording.h"

#include <QByteArray>
#include <QMap>
#include <QMetaType>
#include <QString>
#include <QVariant>
#include <QVector>

using ValueMap = QMap<QString, ZEP::Value>;

Q_DECLARE_METATYPE(Recording)
Q_DECLARE_METATYPE(ValueMap)

/// The table and the records of a recording.
class RecordFeed
{
public:
    explicit RecordFeed(const Recording &recording)
        : m_header(recording.header()), m_table(recording.variableTable()),
          m_records(recording.bytes().mid(recording.sectionOffset(Recording::Records)))
    {
    }

    const irsdk_header *header() const { return &m_header; }
    const irsdk_varHeader *table() const { return m_table.constData(); }

    void compile(iRTelemetryReader *reader) const { reader->compileVariables(header(), table()); }

    /// Hands over record \a number, without the other steps of a tick.
    void read(iRTelemetryReader *reader, int number = 0)
    {
        reader->getRawData(header(), table(), m_records.data() + number * m_header.bufLen);
    }

private:
    irsdk_header m_header;
    QVector<irsdk_varHeader> m_table;
    QByteArray m_records;
};

/// A reader with a driver in each of cars 0 to 9, the player among them.
inline void prepare(iRTelemetryReader *reader, bool diskLoading, int player = Player)
{
    reader->setDiskLoading(diskLoading);
    reader->setYaml(sessionInfoOf(player, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9}).constData());
    reader->updateCarList();
}

/// The difference between two quantities. Types count, and numbers are compared by their bits.
inline QString quantityDifference(const QVariant &actual, const QVariant &expected)
{
    if (actual.userType() != expected.userType())
        return QStringLiteral("type %1 instead of %2")
            .arg(QString::fromLatin1(actual.typeName()), QString::fromLatin1(expected.typeName()));
    if (actual.userType() == int(QMetaType::Float))
        return bitDifference(actual.value<float>(), expected.value<float>());
    if (actual.userType() == int(QMetaType::Double))
        return bitDifference(actual.toDouble(), expected.toDouble());
    return actual == expected
        ? QString()
        : QStringLiteral("%1 instead of %2").arg(actual.toString(), expected.toString());
}

/// The first difference between the values of a sample and the expected ones.
inline QString sampleDifference(const ZEP::Sample &sample, const ValueMap &expected)
{
    if (sample.valueNameList() != expected.keys())
        return QStringLiteral("values %1 instead of %2")
            .arg(QStringList(sample.valueNameList()).join(QLatin1Char(',')),
                 QStringList(expected.keys()).join(QLatin1Char(',')));
    for (const QString &name : expected.keys()) {
        const ZEP::Value value = sample.value(name);
        const QString difference = quantityDifference(value.value, expected.value(name).value);
        if (!difference.isEmpty())
            return QStringLiteral("%1: %2").arg(name, difference);
        if (value.unit() != expected.value(name).unit())
            return QStringLiteral("%1: unit \"%2\" instead of \"%3\"")
                .arg(name, value.unit(), expected.value(name).unit());
    }
    return QString();
}

/// Fails the test function if \a sample does not contain the values \a expected, types and units
/// included.
#define COMPARE_SAMPLE(sample, expected)                                                           \
    do {                                                                                           \
        const QString sampleDifference_ = sampleDifference((sample), (expected));                  \
        QVERIFY2(sampleDifference_.isEmpty(), qPrintable(sampleDifference_));                      \
    } while (false)

inline ZEP::Value value(const QVariant &quantity, const QString &unit = QString())
{
    return ZEP::Value(quantity, unit);
}

/// One record of a table, with \a bytes at its start. Unless \a size is given, the variables fit
/// exactly.
inline Recording oneRecord(const QVector<RecordingVariable> &table, const QByteArray &bytes,
                           int size = -1)
{
    Recording recording = Recording::empty().variables(table);
    if (size >= 0)
        recording.recordSize(size);
    return recording.setBytes(0, bytes).ticks(1);
}

template <typename... Numbers>
QByteArray bytesOf(Numbers... numbers)
{
    QByteArray bytes;
    (bytes.append(reinterpret_cast<const char *>(&numbers), int(sizeof numbers)), ...);
    return bytes;
}
