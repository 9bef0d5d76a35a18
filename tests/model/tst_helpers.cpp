#include "model/helpers.h"
#include "tests/support/extremes.h"
#include "tests/support/roomtests.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <limits>

namespace {

} // namespace

class tst_Helpers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void generateUniqueFileName_data();
    void generateUniqueFileName();
    void foldersAreNoCollisions();
    void printTime_data();
    void printTime();
    void fuzzyCompare_data();
    void fuzzyCompare();
    void fuzzyIsNull_data();
    void fuzzyIsNull();
};

void tst_Helpers::generateUniqueFileName_data()
{
    QTest::addColumn<QStringList>("taken");
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("unique");

    const QStringList none;
    QTest::newRow("free, no folder") << none << "lap.csv"
                                     << "./lap.csv";
    QTest::newRow("free, in a folder") << none << "out/lap.csv"
                                       << "out/lap.csv";
    QTest::newRow("other names") << QStringList{"lap.txt", "laps.csv", "lap_0.csv"} << "lap.csv"
                                 << "./lap.csv";
    QTest::newRow("taken") << QStringList{"lap.csv"} << "lap.csv"
                           << "./lap_0.csv";
    QTest::newRow("first substitute taken") << QStringList{"lap.csv", "lap_0.csv"} << "out/lap.csv"
                                            << "out/lap_1.csv";
    QTest::newRow("a gap among the substitutes")
        << QStringList{"lap.csv", "lap_0.csv", "lap_2.csv"} << "lap.csv"
        << "./lap_1.csv";
    QTest::newRow("more than ten substitutes")
        << QStringList{"lap.csv",   "lap_0.csv", "lap_1.csv", "lap_2.csv", "lap_3.csv", "lap_4.csv",
                       "lap_5.csv", "lap_6.csv", "lap_7.csv", "lap_8.csv", "lap_9.csv"}
        << "lap.csv"
        << "./lap_10.csv";
    QTest::newRow("taken in other letters") << QStringList{"LAP.CSV"} << "lap.csv"
                                            << "./lap.csv";
    QTest::newRow("a substitute is substituted in turn") << QStringList{"lap_0.csv"} << "lap_0.csv"
                                                         << "./lap_0_0.csv";

    QTest::newRow("middle of the name is dropped") << none << "a.b.c"
                                                   << "./a.c";
    QTest::newRow("shortened name taken") << QStringList{"a.c"} << "a.b.c"
                                          << "./a_0.c";
    QTest::newRow("only the unshortened name taken") << QStringList{"a.b.c"} << "a.b.c"
                                                     << "./a.c";
    QTest::newRow("two dots in a row") << none << "a..c"
                                       << "./a.c";
    QTest::newRow("no dot") << none << "lap"
                            << "./lap.";
    QTest::newRow("no dot, such a file without dot") << QStringList{"lap"} << "lap"
                                                     << "./lap.";
    QTest::newRow("no dot, taken with a dot") << QStringList{"lap."} << "lap"
                                              << "./lap_0.";
    QTest::newRow("dot at the end") << none << "lap."
                                    << "./lap.";
    QTest::newRow("dot at the front") << none << ".csv"
                                      << "./.csv";

    QTest::newRow("nested folders") << none << "out/deep/lap.csv"
                                    << "out/deep/lap.csv";
    QTest::newRow("dots in the folder") << none << "v1.2/lap.csv"
                                        << "v1.2/lap.csv";
    QTest::newRow("parent folder") << none << "../lap.csv"
                                   << "../lap.csv";
    QTest::newRow("absolute folder") << none << "/out/lap.csv"
                                     << "/out/lap.csv";
    QTest::newRow("blanks in the name") << QStringList{"my lap.csv"} << "my lap.csv"
                                        << "./my lap_0.csv";
}

void tst_Helpers::generateUniqueFileName()
{
    QFETCH(QStringList, taken);
    QFETCH(QString, fileName);

    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    for (const QString &name : qAsConst(taken)) {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QDir dir(folder.path());
    QTEST(ZEP::generateUniqueFileName(&dir, fileName), "unique");
    QCOMPARE(dir.entryList(QDir::Files).size(), taken.size());
}

void tst_Helpers::foldersAreNoCollisions()
{
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    QDir dir(folder.path());
    QVERIFY(dir.mkdir("lap.csv"));
    QCOMPARE(ZEP::generateUniqueFileName(&dir, "lap.csv"), QString("./lap.csv"));
}

void tst_Helpers::printTime_data()
{
    QTest::addColumn<int>("milliseconds");
    QTest::addColumn<QString>("text");

    QTest::newRow("zero has no sign") << 0 << "0.000";
    QTest::newRow("one") << 1 << "+0.001";
    QTest::newRow("minus one") << -1 << "-0.001";
    QTest::newRow("below a second") << 999 << "+0.999";
    QTest::newRow("a second") << 1000 << "+1.000";
    QTest::newRow("seconds") << 1234 << "+1.234";
    QTest::newRow("two-digit seconds") << 12034 << "+12.034";
    QTest::newRow("below a minute") << 59999 << "+59.999";
    QTest::newRow("a minute") << 60000 << "+1:00.000";
    QTest::newRow("minus below a minute") << -59999 << "-59.999";
    QTest::newRow("minus a minute") << -60000 << "-1:00.000";
    QTest::newRow("minus minutes") << -75000 << "-1:15.000";
    QTest::newRow("one-digit seconds behind minutes") << 65004 << "+1:05.004";
    QTest::newRow("two-digit minutes") << 754321 << "+12:34.321";
    QTest::newRow("below an hour") << 3599999 << "+59:59.999";
    QTest::newRow("an hour is not shown") << 3600000 << "+0:00.000";
    QTest::newRow("behind an hour") << 3661000 << "+1:01.000";
    QTest::newRow("minus behind an hour") << -3661000 << "-1:01.000";
    QTest::newRow("below a day") << 86399999 << "+59:59.999";
    QTest::newRow("a day is not shown") << 86400000 << "+0:00.000";
    QTest::newRow("behind a day") << 86461002 << "+1:01.002";
    QTest::newRow("greatest") << std::numeric_limits<int>::max() << "+31:23.647";
    QTest::newRow("least, whose magnitude is no int")
        << std::numeric_limits<int>::min() << "-31:23.648";
}

void tst_Helpers::printTime()
{
    QFETCH(int, milliseconds);

    QTEST(ZEP::printTime(milliseconds), "text");
}

void tst_Helpers::fuzzyCompare_data()
{
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");
    QTest::addColumn<double>("epsilon");
    QTest::addColumn<bool>("equal");

    QTest::newRow("both zero") << 0.0 << 0.0 << 1e-9 << true;
    QTest::newRow("zero and minus zero") << 0.0 << -0.0 << 1e-9 << true;
    QTest::newRow("both near zero") << 0.0 << 1e-12 << 1e-9 << true;
    QTest::newRow("near zero with different signs") << -5e-10 << 5e-10 << 1e-9 << true;
    QTest::newRow("only one near zero") << 0.0 << 1.0 << 1e-9 << false;
    QTest::newRow("epsilon is not near zero") << 0.0 << 0.25 << 0.25 << false;
    QTest::newRow("just below epsilon is near zero") << 0.0 << 0.2499999 << 0.25 << true;
    QTest::newRow("both are epsilon") << 0.25 << 0.25 << 0.25 << true;
    QTest::newRow("close") << 100.0 << 100.0000001 << 1e-6 << true;
    QTest::newRow("not close") << 100.0 << 100.001 << 1e-6 << false;
    QTest::newRow("exactly at the tolerance") << 2.0 << 3.0 << 0.5 << true;
    QTest::newRow("just beyond the tolerance") << 2.0 << 3.0000001 << 0.5 << false;
    QTest::newRow("tolerance is relative to the smaller") << 10.0 << 15.5 << 0.5 << false;
    QTest::newRow("negative, close") << -100.0 << -100.0000001 << 1e-6 << true;
    QTest::newRow("different signs") << 100.0 << -100.0 << 1e-6 << false;
    QTest::newRow("equal without tolerance") << 1.5 << 1.5 << 0.0 << true;
    QTest::newRow("zero without tolerance") << 0.0 << 0.0 << 0.0 << true;
    QTest::newRow("unequal without tolerance") << 1.5 << 1.5000001 << 0.0 << false;
    QTest::newRow("tolerance below zero") << 1.5 << 1.5 << -1.0 << false;
    QTest::newRow("infinities have no difference") << Infinity << Infinity << 1e-6 << false;
    QTest::newRow("infinity and number") << Infinity << 1.0 << 1e-6 << false;
    QTest::newRow("NaN and number") << NaN << 1.0 << 1e-6 << false;
    QTest::newRow("NaN and zero") << NaN << 0.0 << 1e-6 << false;
    QTest::newRow("NaN and NaN") << NaN << NaN << 1e-6 << false;
    QTest::newRow("tolerance NaN") << 1.0 << 1.0 << NaN << false;
    QTest::newRow("tolerance NaN, both zero") << 0.0 << 0.0 << NaN << false;
}

void tst_Helpers::fuzzyCompare()
{
    QFETCH(double, a);
    QFETCH(double, b);
    QFETCH(double, epsilon);
    QFETCH(bool, equal);

    QCOMPARE(ZEP::fuzzyCompare(a, b, epsilon), equal);
    QCOMPARE(ZEP::fuzzyCompare(b, a, epsilon), equal);
}

void tst_Helpers::fuzzyIsNull_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<double>("epsilon");
    QTest::addColumn<bool>("null");

    QTest::newRow("zero") << 0.0 << 1e-9 << true;
    QTest::newRow("minus zero") << -0.0 << 1e-9 << true;
    QTest::newRow("below epsilon") << 0.24999 << 0.25 << true;
    QTest::newRow("epsilon") << 0.25 << 0.25 << false;
    QTest::newRow("above epsilon") << 0.25001 << 0.25 << false;
    QTest::newRow("negative below epsilon") << -0.24999 << 0.25 << true;
    QTest::newRow("minus epsilon") << -0.25 << 0.25 << false;
    QTest::newRow("zero without tolerance") << 0.0 << 0.0 << false;
    QTest::newRow("infinity") << Infinity << 1e-9 << false;
    QTest::newRow("infinite tolerance") << 1e300 << Infinity << true;
    QTest::newRow("NaN") << NaN << 1e-9 << false;
    QTest::newRow("tolerance NaN") << 0.0 << NaN << false;
}

void tst_Helpers::fuzzyIsNull()
{
    QFETCH(double, number);
    QFETCH(double, epsilon);

    QTEST(ZEP::fuzzyIsNull(number, epsilon), "null");
}

NAPAMMUL_TEST(tst_Helpers)

#include "tst_helpers.moc"
