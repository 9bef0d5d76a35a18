#include "tests/support/roomtests.h"
#include "writers/matwriter.h"
#include "writers/outputfile.h"

#include <QTest>

/// What scipy reads of MAT files is the subject of tst_exportreaders.
class tst_MatWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noLaps();
    void tooMuchForOneFile();
};

void tst_MatWriter::noLaps()
{
    const QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("laps.mat"));
    QString problem;
    OutputFile file(name);
    QVERIFY(file.open(false, &problem));
    MatWriter writer(file, {}, QStringLiteral("a.ibt"));
    QVERIFY2(writer.finish(&problem), qPrintable(problem));
    QVERIFY2(file.commit(&problem), qPrintable(problem));
    QVERIFY(QFileInfo(name).size() > 128);
}

void tst_MatWriter::tooMuchForOneFile()
{
    constexpr int channelCount = 300;
    // All channels share the samples, so that it is much for the file alone.
    const QVector<double> samples(1000000, 1.0);
    auto lap = std::make_unique<ZEP::Lap>();
    QVector<ChosenChannel> channels;
    for (int i = 0; i < channelCount; ++i) {
        auto *channel = new ZEP::Channel;
        channel->data = samples;
        const QString name = QStringLiteral("channel%1").arg(i);
        lap->addChannel(channel, name);
        channels.append({name, false});
    }
    const QTemporaryDir dir;
    QString problem;
    {
        OutputFile file(dir.filePath(QStringLiteral("laps.mat")));
        QVERIFY(file.open(false, &problem));
        MatWriter writer(file, channels, QStringLiteral("a.ibt"));
        writer.write(1, std::move(lap));
        QVERIFY(!writer.finish(&problem));
    }
    QCOMPARE(problem,
             QStringLiteral("a MAT file cannot contain more than 2 GB; use --split, or choose "
                            "fewer laps or channels"));
    QVERIFY(QDir(dir.path()).isEmpty());
}

NAPAMMUL_TEST(tst_MatWriter)
#include "tst_matwriter.moc"
