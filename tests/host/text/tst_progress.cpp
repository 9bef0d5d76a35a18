#include "host/commands/filework.h"
#include "host/text/progress.h"
#include "tests/support/roomtests.h"

#include <QTest>

class tst_Progress : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void line_data();
    void line();
    void summary_data();
    void summary();
};

Q_DECLARE_METATYPE(Progress::State)

void tst_Progress::line_data()
{
    QTest::addColumn<Progress::State>("state");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("line");

    const auto state = [](int done, int files, qint64 doneBytes, qint64 bytes,
                          qint64 milliseconds) {
        Progress::State result;
        result.doneFiles = done;
        result.files = files;
        result.doneBytes = doneBytes;
        result.bytes = bytes;
        result.milliseconds = milliseconds;
        return result;
    };
    QTest::newRow("nothing yet") << state(0, 3, 0, 1000, 0) << 80
                                 << "[------------------------------]   0 %  0 of 3 files";
    QTest::newRow("a third") << state(1, 3, 100000000, 300000000, 2000) << 80
                             << "[##########--------------------]  33 %  1 of 3 files  50.0 MB/s"
                                "  0:04 left";
    QTest::newRow("all") << state(3, 3, 300000000, 300000000, 6000) << 80
                         << "[##############################] 100 %  3 of 3 files  50.0 MB/s"
                            "  0:00 left";
    QTest::newRow("minutes") << state(1, 100, 1000000, 100000000, 1000) << 80
                             << "[------------------------------]   1 %  1 of 100 files  1.0 MB/s"
                                "  1:39 left";
    QTest::newRow("hours") << state(1, 9, 1000000, 10000000000, 1000) << 80
                           << "[------------------------------]   0 %  1 of 9 files  1.0 MB/s"
                              "  2:46:39 left";
    QTest::newRow("narrow") << state(1, 2, 50000000, 100000000, 1000) << 56
                            << "[#####------]  50 %  1 of 2 files  50.0 MB/s  0:01 left";
    QTest::newRow("no room for a bar") << state(1, 2, 50000000, 100000000, 1000) << 45
                                       << " 50 %  1 of 2 files  50.0 MB/s  0:01 left";
    QTest::newRow("no room") << state(1, 2, 50000000, 100000000, 1000) << 10 << " 50 %  1 …";
    QTest::newRow("empty files") << state(1, 2, 0, 0, 10) << 40
                                 << "[-----------------]   0 %  1 of 2 files";
}

void tst_Progress::line()
{
    QFETCH(Progress::State, state);
    QFETCH(int, width);
    const QString line = Progress::line(state, width);
    QTEST(line, "line");
    QVERIFY(line.size() <= width);
}

void tst_Progress::summary_data()
{
    QTest::addColumn<int>("files");
    QTest::addColumn<QStringList>("failed");
    QTest::addColumn<QString>("text");

    QTest::newRow("none failed") << 3 << QStringList{} << "3 of 3 files done";
    QTest::newRow("two failed") << 3 << QStringList{"a", "b"} << "1 of 3 files done, failed: a, b";
    QTest::newRow("many failed") << 9 << QStringList{"a", "b", "c", "d", "e", "f", "g"}
                                 << "2 of 9 files done, failed: a, b, c, d, e and 2 more";
}

void tst_Progress::summary()
{
    QFETCH(int, files);
    QFETCH(QStringList, failed);
    QTEST(filesSummary(files, failed, "done"), "text");
}

NAPAMMUL_TEST(tst_Progress)
#include "tst_progress.moc"
