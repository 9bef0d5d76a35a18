#include "model/lapheader.h"
#include "tests/support/roomtests.h"

#include <QTest>

#include <functional>
#include <limits>
#include <type_traits>

static_assert(std::is_base_of_v<ZEP::DynamicData, ZEP::LapHeader>);
static_assert(std::is_convertible_v<ZEP::LapHeader *, ZEP::DynamicData *>);
static_assert(std::has_virtual_destructor_v<ZEP::LapHeader>);
static_assert(sizeof(ZEP::Session) == 4 && sizeof(ZEP::LapType) == 4);

namespace {

/// One of the fixed fields, read and written as a variant.
struct Field {
    const char *name = nullptr;
    std::function<QVariant(const ZEP::LapHeader &)> get;
    std::function<void(ZEP::LapHeader &, const QVariant &)> set;
    QVariant initial;
    QVariant example;
};

template <typename T>
Field field(const char *name, T (ZEP::LapHeader::*getter)() const,
            void (ZEP::LapHeader::*setter)(const T &), const T &initial, const T &example)
{
    return {
        name,
        [getter](const ZEP::LapHeader &header) { return QVariant::fromValue((header.*getter)()); },
        [setter](ZEP::LapHeader &header, const QVariant &value) {
            (header.*setter)(value.value<T>());
        },
        QVariant::fromValue(initial), QVariant::fromValue(example)};
}

template <typename T>
Field plainField(const char *name, T (ZEP::LapHeader::*getter)() const,
                 void (ZEP::LapHeader::*setter)(T), T initial, T example)
{
    return {name, [getter](const ZEP::LapHeader &header) { return QVariant((header.*getter)()); },
            [setter](ZEP::LapHeader &header, const QVariant &value) {
                (header.*setter)(value.value<T>());
            },
            QVariant(initial), QVariant(example)};
}

template <typename T>
Field enumField(const char *name, T (ZEP::LapHeader::*getter)() const,
                void (ZEP::LapHeader::*setter)(const T &), T example)
{
    return {name,
            [getter](const ZEP::LapHeader &header) { return QVariant(int((header.*getter)())); },
            [setter](ZEP::LapHeader &header, const QVariant &value) {
                (header.*setter)(T(value.toInt()));
            },
            QVariant(-1), QVariant(int(example))};
}

QUuid uuid(int number)
{
    return QUuid(
        QStringLiteral("{00000000-0000-4000-8000-%1}").arg(number, 12, 10, QLatin1Char('0')));
}

QVector<Field> fields()
{
    using ZEP::LapHeader;
    const QDateTime dateTime(QDate(2021, 3, 14), QTime(15, 9, 26, 535), Qt::UTC);
    // The examples differ from each other, so that no two fields can be mixed up.
    return {
        field<QUuid>("lapId", &LapHeader::getLapId, &LapHeader::setLapId, QUuid(), uuid(1)),
        field<QUuid>("stintId", &LapHeader::getStintId, &LapHeader::setStintId, QUuid(), uuid(2)),
        field<QUuid>("sessionId", &LapHeader::getSessionId, &LapHeader::setSessionId, QUuid(),
                     uuid(3)),
        {"carId", [](const LapHeader &header) { return header.getCarId(); },
         [](LapHeader &header, const QVariant &value) { header.setCarId(value); }, QVariant(),
         QVariant(7)},
        plainField<int>("lapInSession", &LapHeader::getLapInSession, &LapHeader::setLapInSession, 0,
                        11),
        plainField<int>("lapInStint", &LapHeader::getLapInStint, &LapHeader::setLapInStint, 0, -12),
        plainField<int>("stintInSession", &LapHeader::getStintInSession,
                        &LapHeader::setStintInSession, 0, 13),
        enumField<ZEP::Session>("session", &LapHeader::getSession, &LapHeader::setSession,
                                ZEP::SessionRace),
        field<QString>("driverName", &LapHeader::getDriverName, &LapHeader::setDriverName,
                       QString(), "A Driver"),
        plainField<bool>("completed", &LapHeader::getCompleted, &LapHeader::setCompleted, false,
                         true),
        enumField<ZEP::LapType>("lapType", &LapHeader::getLapType, &LapHeader::setLapType,
                                ZEP::LapTypeTimed),
        field<QTime>("lapTime", &LapHeader::getLapTime, &LapHeader::setLapTime, QTime(),
                     QTime(0, 1, 23, 456)),
        field<QString>("fileName", &LapHeader::getFileName, &LapHeader::setFileName, QString(),
                       "a file"),
        field<QString>("trackName", &LapHeader::getTrackName, &LapHeader::setTrackName, QString(),
                       "A Track"),
        field<QString>("trackConfig", &LapHeader::getTrackConfig, &LapHeader::setTrackConfig,
                       QString(), "A Layout"),
        field<QString>("carName", &LapHeader::getCarName, &LapHeader::setCarName, QString(),
                       "A Car"),
        field<QString>("source", &LapHeader::getSource, &LapHeader::setSource, QString(),
                       "A Source"),
        field<QString>("plugin", &LapHeader::getPlugin, &LapHeader::setPlugin, QString(),
                       "A Plug-in"),
        field<QDateTime>("dateTime", &LapHeader::getDateTime, &LapHeader::setDateTime, QDateTime(),
                         dateTime),
    };
}

ZEP::LapHeader filledHeader()
{
    ZEP::LapHeader header;
    for (const Field &one : fields())
        one.set(header, one.example);
    header.addValue("Track city", QVariant(QString("A City")), QString());
    return header;
}

} // namespace

class tst_LapHeader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaults_data();
    void defaults();
    void defaultsAreNull();
    void setterWritesOneField_data();
    void setterWritesOneField();
    void setterOverwrites_data();
    void setterOverwrites();
    void nothingIsValidated();
    void sessionNumbers_data();
    void sessionNumbers();
    void lapTypeNumbers_data();
    void lapTypeNumbers();
    void namedValuesAreApartFromTheFields();
    void clearingValuesKeepsTheFields();
    void copiesCarryEverything_data();
    void copiesCarryEverything();
    void copiesAreIndependent();

private:
    static void addFields();
};

void tst_LapHeader::addFields()
{
    QTest::addColumn<int>("index");

    const QVector<Field> all = fields();
    for (int i = 0; i < all.size(); ++i)
        QTest::newRow(all.at(i).name) << i;
}

void tst_LapHeader::defaults_data()
{
    addFields();
}

void tst_LapHeader::defaults()
{
    QFETCH(int, index);

    const Field one = fields().at(index);
    QCOMPARE(one.get(ZEP::LapHeader()), one.initial);
}

void tst_LapHeader::defaultsAreNull()
{
    const ZEP::LapHeader header;
    QVERIFY(header.getLapId().isNull());
    QVERIFY(header.getStintId().isNull());
    QVERIFY(header.getSessionId().isNull());
    QVERIFY(!header.getCarId().isValid());
    QVERIFY(!header.getLapTime().isValid());
    QVERIFY(header.getLapTime().isNull());
    QVERIFY(header.getDateTime().isNull());
    QVERIFY(header.valueNameList().isEmpty());
}

void tst_LapHeader::setterWritesOneField_data()
{
    addFields();
}

void tst_LapHeader::setterWritesOneField()
{
    QFETCH(int, index);

    const QVector<Field> all = fields();
    ZEP::LapHeader header;
    all.at(index).set(header, all.at(index).example);
    for (int i = 0; i < all.size(); ++i) {
        const QVariant expected = i == index ? all.at(i).example : all.at(i).initial;
        QVERIFY2(all.at(i).get(header) == expected, all.at(i).name);
    }
    QVERIFY(header.valueNameList().isEmpty());
}

void tst_LapHeader::setterOverwrites_data()
{
    addFields();
}

void tst_LapHeader::setterOverwrites()
{
    QFETCH(int, index);

    const QVector<Field> all = fields();
    ZEP::LapHeader header = filledHeader();
    all.at(index).set(header, all.at(index).initial);
    for (int i = 0; i < all.size(); ++i) {
        const QVariant expected = i == index ? all.at(i).initial : all.at(i).example;
        QVERIFY2(all.at(i).get(header) == expected, all.at(i).name);
    }
}

void tst_LapHeader::nothingIsValidated()
{
    ZEP::LapHeader header;
    header.setLapInSession(std::numeric_limits<int>::min());
    header.setLapInStint(std::numeric_limits<int>::max());
    header.setSession(static_cast<ZEP::Session>(4));
    header.setLapType(static_cast<ZEP::LapType>(6));
    QCOMPARE(header.getLapInSession(), std::numeric_limits<int>::min());
    QCOMPARE(header.getLapInStint(), std::numeric_limits<int>::max());
    QCOMPARE(int(header.getSession()), 4);
    QCOMPARE(int(header.getLapType()), 6);
}

void tst_LapHeader::sessionNumbers_data()
{
    QTest::addColumn<int>("session");
    QTest::addColumn<int>("number");

    QTest::newRow("not set") << int(ZEP::SessionNotSet) << -1;
    QTest::newRow("offline testing") << int(ZEP::SessionOfflineTesting) << 0;
    QTest::newRow("practice") << int(ZEP::SessionPractice) << 1;
    QTest::newRow("qualifying") << int(ZEP::SessionQualify) << 2;
    QTest::newRow("warm-up") << int(ZEP::SessionWarmup) << 3;
    QTest::newRow("race") << int(ZEP::SessionRace) << 5;
}

void tst_LapHeader::sessionNumbers()
{
    QFETCH(int, session);
    QTEST(session, "number");
}

void tst_LapHeader::lapTypeNumbers_data()
{
    QTest::addColumn<int>("lapType");
    QTest::addColumn<int>("number");

    QTest::newRow("not set") << int(ZEP::LapTypeNotSet) << -1;
    QTest::newRow("first of a stint") << int(ZEP::LapTypeOutLap) << 0;
    QTest::newRow("timed") << int(ZEP::LapTypeTimed) << 1;
}

void tst_LapHeader::lapTypeNumbers()
{
    QFETCH(int, lapType);
    QTEST(lapType, "number");
}

void tst_LapHeader::namedValuesAreApartFromTheFields()
{
    ZEP::LapHeader header;
    header.setTrackName("A Track");
    header.addValue("trackName", QVariant(QString("named")), "m");
    QCOMPARE(header.getTrackName(), QString("A Track"));
    QCOMPARE(header.value("trackName").print(), QString("named m"));
    QVERIFY(!header.containsValue("driverName"));
    header.removeValue("trackName");
    QVERIFY(!header.containsValue("trackName"));
    QCOMPARE(header.getTrackName(), QString("A Track"));
}

void tst_LapHeader::clearingValuesKeepsTheFields()
{
    ZEP::LapHeader header = filledHeader();
    header.clear();
    QVERIFY(header.valueNameList().isEmpty());
    for (const Field &one : fields())
        QVERIFY2(one.get(header) == one.example, one.name);
}

void tst_LapHeader::copiesCarryEverything_data()
{
    addFields();
}

void tst_LapHeader::copiesCarryEverything()
{
    QFETCH(int, index);

    const Field one = fields().at(index);
    const ZEP::LapHeader source = filledHeader();
    const ZEP::LapHeader copy(source);
    ZEP::LapHeader assigned;
    assigned = source;
    QCOMPARE(one.get(copy), one.example);
    QCOMPARE(one.get(assigned), one.example);
    QCOMPARE(copy.value("Track city").print(), QString("A City"));
    QCOMPARE(assigned.value("Track city").print(), QString("A City"));
}

void tst_LapHeader::copiesAreIndependent()
{
    const ZEP::LapHeader source = filledHeader();
    ZEP::LapHeader copy(source);
    copy.addValue("Skies", QVariant(QString("Clear")), QString());
    copy.setDriverName("Another Driver");
    QCOMPARE(source.valueNameList(), QList<QString>{"Track city"});
    QCOMPARE(source.getDriverName(), QString("A Driver"));
}

NAPAMMUL_TEST(tst_LapHeader)

#include "tst_lapheader.moc"
