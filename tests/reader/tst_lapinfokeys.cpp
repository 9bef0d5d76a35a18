#include "ibt/lapinfokeys.h"
#include "tests/support/roomtests.h"
#include "tests/support/sessioninfotext.h"

#include <QTest>

namespace {

/// All that a lap has from the session info.
QStringList contents(const QByteArray &text)
{
    const ZEP::Lap lap = lapOf(text);
    QStringList result{lap.getTrackName(), lap.getTrackConfig(), lap.getDriverName(),
                       lap.getCarName(), lap.getSessionId().toString()};
    for (const QString &name : lap.valueNameList())
        result.append(name % lap.value(name).print());
    return result;
}

} // namespace

class tst_LapInfoKeys : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyKeyChangesTheLap_data();
    void everyKeyChangesTheLap();
};

void tst_LapInfoKeys::everyKeyChangesTheLap_data()
{
    QTest::addColumn<QByteArray>("key");
    const auto add = [](const LapInfoKey &entry) {
        const QByteArray key = QByteArray(entry.key).split('/').last();
        QTest::newRow(key.constData()) << key;
    };
    for (const LapInfoKey &key : LapWeekendKeys)
        add(key);
    for (const LapInfoKey &key : LapFuelKeys)
        add(key);
    for (const LapInfoKey &key : LapDriverKeys)
        add(key);
}

void tst_LapInfoKeys::everyKeyChangesTheLap()
{
    QFETCH(QByteArray, key);
    const QByteArray without = textWith(' ' + key, QByteArray());
    QVERIFY(contents(without) != contents(wholeText()));
}

NAPAMMUL_TEST(tst_LapInfoKeys)
#include "tst_lapinfokeys.moc"
