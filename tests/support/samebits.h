// Compares samples by their bits.
//
// QCOMPARE accepts doubles that are only nearly equal, and treats NaN as equal to NaN. Samples that
// must be the same are compared here instead: -0.0 differs from 0.0, and a NaN differs from a NaN
// with another sign.
#pragma once

#include <QTest>
#include <QVector>

#include <cstring>

inline quint64 bitsOf(double value)
{
    quint64 bits = 0;
    static_assert(sizeof bits == sizeof value);
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

inline quint32 bitsOf(float value)
{
    quint32 bits = 0;
    static_assert(sizeof bits == sizeof value);
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

inline bool sameBits(double left, double right)
{
    return bitsOf(left) == bitsOf(right);
}

inline bool sameBits(float left, float right)
{
    return bitsOf(left) == bitsOf(right);
}

/// The difference between two numbers; empty if there is none.
inline QString bitDifference(double actual, double expected)
{
    if (sameBits(actual, expected))
        return QString();
    return QStringLiteral("%1 (0x%2) instead of %3 (0x%4)")
        .arg(actual, 0, 'g', 17)
        .arg(bitsOf(actual), 16, 16, QLatin1Char('0'))
        .arg(expected, 0, 'g', 17)
        .arg(bitsOf(expected), 16, 16, QLatin1Char('0'));
}

inline QString bitDifference(float actual, float expected)
{
    return bitDifference(double(actual), double(expected));
}

/// The first difference between two sequences of samples; empty if there is none.
inline QString bitDifference(const QVector<double> &actual, const QVector<double> &expected)
{
    if (actual.size() != expected.size())
        return QStringLiteral("%1 samples instead of %2").arg(actual.size()).arg(expected.size());
    // Nearly all sequences that tests compare are equal, and this tells so in a fraction of the
    // time.
    const auto bytes = std::size_t(actual.size()) * sizeof(double);
    if (bytes == 0 || std::memcmp(actual.constData(), expected.constData(), bytes) == 0)
        return QString();
    for (int i = 0; i < actual.size(); ++i) {
        const QString difference = bitDifference(actual.at(i), expected.at(i));
        if (!difference.isEmpty())
            return QStringLiteral("sample %1: %2").arg(i).arg(difference);
    }
    return QString();
}

/// Fails the test function if \a actual and \a expected, two numbers or two sequences of numbers of
/// one type, differ in a single bit.
#define COMPARE_BITS(actual, expected)                                                             \
    do {                                                                                           \
        const QString bitDifference_ = bitDifference((actual), (expected));                        \
        QVERIFY2(bitDifference_.isEmpty(),                                                         \
                 qPrintable(QStringLiteral(#actual ": ") + bitDifference_));                       \
    } while (false)
