#include "analysis/lapquantities.h"
#include "tests/support/lapchannels.h"
#include "tests/support/roomtests.h"

#include <QTest>

using Samples = QVector<double>;

/// Single numbers of a lap, from its channels.
class tst_LapQuantities : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void measures_data();
    void measures();
    void channelThatIsMissing();
};

namespace {

QString text(const std::optional<Quantity> &quantity)
{
    return quantity ? QString(QString::number(quantity->value) % QLatin1Char(' ') % quantity->unit)
                    : QStringLiteral("none");
}

} // namespace

void tst_LapQuantities::measures_data()
{
    QTest::addColumn<Samples>("samples");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("mean");
    QTest::addColumn<QString>("last");

    QTest::newRow("all valid") << Samples{1, 2, 6} << "1 C"
                               << "3 C"
                               << "6 C";
    QTest::newRow("one") << Samples{-4} << "-4 C"
                         << "-4 C"
                         << "-4 C";
    QTest::newRow("missing at both ends") << Samples{NoSample, 2, NoSample, 4, NoSample} << "2 C"
                                          << "3 C"
                                          << "4 C";
    QTest::newRow("none valid") << Samples{NoSample, NoSample} << "none"
                                << "none"
                                << "none";
    QTest::newRow("none at all") << Samples() << "none"
                                 << "none"
                                 << "none";
}

void tst_LapQuantities::measures()
{
    QFETCH(Samples, samples);
    const QString name = QStringLiteral("watertemp");
    ZEP::Lap lap;
    lap.addChannel(newChannel(samples, QStringLiteral("C")), name);
    QTEST(text(firstOf(lap, name)), "first");
    QTEST(text(meanOf(lap, name)), "mean");
    QTEST(text(lastOf(lap, name)), "last");
}

void tst_LapQuantities::channelThatIsMissing()
{
    const ZEP::Lap lap;
    const QString name = QStringLiteral("watertemp");
    QVERIFY(!firstOf(lap, name) && !meanOf(lap, name) && !lastOf(lap, name));
}

NAPAMMUL_TEST(tst_LapQuantities)
#include "tst_lapquantities.moc"
