#include "tests/support/roomtests.h"
#include "writers/exportnames.h"

#include <QTest>

Q_DECLARE_METATYPE(ExportNames::Format)

class tst_ExportNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void names_data();
    void names();
    void subfolder_data();
    void subfolder();
    void problem_data();
    void problem();

private:
    QTemporaryDir m_dir;
};

void tst_ExportNames::initTestCase()
{
    QVERIFY(QDir::setCurrent(m_dir.path()));
    QVERIFY(QDir().mkpath(QStringLiteral("out.d")));
}

void tst_ExportNames::names_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("format");
    QTest::addColumn<ExportNames::Format>("chosen");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("nameOfLap"); // number 3

    using Format = ExportNames::Format;
    QTest::newRow("nothing said") << ""
                                  << "" << Format::Csv << "a.b.csv"
                                  << "a.b-lap03.csv";
    QTest::newRow("format") << ""
                            << "json" << Format::Json << "a.b.json"
                            << "a.b-lap03.json";
    QTest::newRow("file") << "x/y.mat"
                          << "" << Format::Mat << "x/y.mat"
                          << "x/y-lap03.mat";
    QTest::newRow("suffix in capitals") << "y.JSON"
                                        << "" << Format::Json << "y.JSON"
                                        << "y-lap03.JSON";
    QTest::newRow("file of another suffix") << "y.txt"
                                            << "csv" << Format::Csv << "y.txt"
                                            << "y-lap03.txt";
    QTest::newRow("file without a suffix") << "y"
                                           << "mat" << Format::Mat << "y"
                                           << "y-lap03";
    QTest::newRow("folder") << "out.d"
                            << "" << Format::Csv << "out.d/a.b.csv"
                            << "out.d/a.b-lap03.csv";
    QTest::newRow("folder and format") << "out.d/"
                                       << "mat" << Format::Mat << "out.d/a.b.mat"
                                       << "out.d/a.b-lap03.mat";
    QTest::newRow("device") << "/dev/null"
                            << "" << Format::Csv << "/dev/null"
                            << "/dev/null-lap03";
}

void tst_ExportNames::names()
{
    QFETCH(QString, output);
    QFETCH(QString, format);
    QFETCH(ExportNames::Format, chosen);
    QString problem;
    const auto names = ExportNames::from(output, format, true, &problem);
    QVERIFY2(names, qPrintable(problem));
    QCOMPARE(names->format(), chosen);
    QTEST(names->fileName(QStringLiteral("season/a.b.ibt")), "name");
    QTEST(names->fileName(QStringLiteral("season/a.b.ibt"), 3), "nameOfLap");
    QVERIFY(names->fileName(QStringLiteral("a.ibt"), 123).contains(QLatin1String("-lap123")));
    QCOMPARE(names->isOneFile(), !output.isEmpty() && !output.startsWith(QLatin1String("out.d")));
}

void tst_ExportNames::subfolder_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("subfolder");
    QTest::addColumn<QString>("inIt");
    QTest::addColumn<QString>("name");

    QTest::newRow("none") << "out.d"
                          << ""
                          << "out.d"
                          << "out.d/a.csv";
    QTest::newRow("folder") << "out.d"
                            << "x/y"
                            << "out.d/x/y/"
                            << "out.d/x/y/a.csv";
    QTest::newRow("current folder") << ""
                                    << "x"
                                    << "x/"
                                    << "x/a.csv";
    QTest::newRow("file") << "b.csv"
                          << "x"
                          << "b.csv"
                          << "b.csv";
    QTest::newRow("standard output") << "-"
                                     << "x"
                                     << "-"
                                     << "-";
}

void tst_ExportNames::subfolder()
{
    QFETCH(QString, output);
    QFETCH(QString, subfolder);
    QString problem;
    const auto names = ExportNames::from(output, QString(), false, &problem);
    QVERIFY2(names, qPrintable(problem));
    QTEST(names->in(subfolder).output(), "inIt");
    QTEST(names->in(subfolder).fileName(QStringLiteral("m/x/y/a.ibt")), "name");
}

void tst_ExportNames::problem_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("problem");

    QTest::newRow("unknown suffix")
        << "a.txt"
        << "a.txt: no format has this suffix; choose one with --format csv, json or mat";
    QTest::newRow("no suffix")
        << "a"
        << "a: no format has this suffix; choose one with --format csv, json or mat, or create "
           "the folder first";
    QTest::newRow("missing folder") << "none/"
                                    << "none/: no such folder; create it first";
    QTest::newRow("laps on standard output")
        << "-"
        << "--split writes several files; give a folder or a file with --output";
}

void tst_ExportNames::problem()
{
    QFETCH(QString, output);
    QString found;
    QVERIFY(!ExportNames::from(output, QString(), true, &found));
    QTEST(found, "problem");
}

NAPAMMUL_TEST(tst_ExportNames)
#include "tst_exportnames.moc"
