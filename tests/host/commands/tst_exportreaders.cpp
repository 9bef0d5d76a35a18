#include "tests/support/processlimit.h"
#include "tests/support/roomtests.h"
#include "tests/support/zepimportprocess.h"

#include <QProcess>
#include <QTest>

/// What others read from exported files is what the plug-in gave, to the last bit.
class tst_ExportReaders : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void same_data();
    void same();
    void differenceIsFound_data();
    void differenceIsFound();

private:
    QString file(const QString &name) const { return m_dir.filePath(name); }
    void write(const QString &name, const QByteArray &content) const;
    void exported(const QStringList &arguments) const;
    QString readBack(const QStringList &arguments) const;

    QTemporaryDir m_dir;
};

namespace {

const QString sheetPlugin = QStringLiteral(LAPSHEET_PLUGIN_PATH);
const QString realPlugin = QStringLiteral(NAPAMMUL_PLUGIN_PATH);

/// Samples that are easily written wrong, and channels that laps do not share.
const char oddSheet[] = R"(lap|0|1|3599000|0|1|0
channel|alone|bar|1 2
channel|lap||0 0 0
channel|speed|m/s|0 -0 0.1
calculated|lap|km|0.5 1.5 2.5
lap|1|1|65623|1|1|1
channel|numbers|a,"b";|1e23 5e-324 -2.2250738585072014e-308 1.7976931348623157e308 0.30000000000000004 100000 123456789012345680 -1e-7
channel|lap||1 - 1 1 1 1 1 1
channel|odd, "name"; Ω|°C|1.5 - 1e24 1.0000000138484279e24 nan inf -inf 9.99e23
channel|short|m|7
channel|speed||- - - 4 4 4 -4 4
lap|1|0|1|2|1|2
)";

bool finished(QProcess &process)
{
    return process.waitForFinished(ProcessLimit) && process.exitStatus() == QProcess::NormalExit;
}

} // namespace

void tst_ExportReaders::initTestCase()
{
    QProcess generator;
    generator.start(
        QStringLiteral(IBTGEN_PATH),
        {"--laps", "1", "--rate", "15", "--seed", "5", file(QStringLiteral("demo.ibt"))});
    QVERIFY(finished(generator));
    QCOMPARE(generator.exitCode(), 0);
    write(QStringLiteral("odd.laps"), oddSheet);

    for (const auto &[plugin, recording] : {std::pair(realPlugin, QStringLiteral("demo.ibt")),
                                            std::pair(sheetPlugin, QStringLiteral("odd.laps"))}) {
        QProcess dump;
        dump.setStandardOutputFile(file(recording + QStringLiteral(".bits")));
        dump.start(QStringLiteral(SAMPLEBITS_PATH), {plugin, file(recording)});
        QVERIFY(finished(dump));
        QCOMPARE(dump.exitCode(), 0);
    }
}

void tst_ExportReaders::write(const QString &name, const QByteArray &content) const
{
    QFile output(file(name));
    QVERIFY(output.open(QIODevice::WriteOnly));
    QCOMPARE(output.write(content), qint64(content.size()));
}

void tst_ExportReaders::exported(const QStringList &arguments) const
{
    ZepimportProcess process;
    process.arguments = QStringList{"export", "--force"} + arguments;
    process.environment.append(QLatin1String("ZEP_PLUGIN_PATH=") % realPlugin % QLatin1Char(':')
                               % sheetPlugin);
    process.folder = m_dir.path();
    const Outcome outcome = process.run();
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.exitCode, 0);
}

QString tst_ExportReaders::readBack(const QStringList &arguments) const
{
    QProcess python;
    python.setWorkingDirectory(m_dir.path());
    python.start(QStringLiteral(PYTHON_PATH),
                 QStringList{QFINDTESTDATA("readback.py")} + arguments);
    if (!finished(python))
        return QStringLiteral("Python did not end by itself");
    const QString errors = QString::fromUtf8(python.readAllStandardError());
    if (python.exitCode() != 0 && errors.isEmpty())
        return QStringLiteral("Python says nothing");
    return errors;
}

void tst_ExportReaders::same_data()
{
    QTest::addColumn<QString>("reader");
    QTest::addColumn<QString>("recording");
    QTest::addColumn<QString>("laps");
    QTest::addColumn<QStringList>("options"); // of the export
    QTest::addColumn<QStringList>("readerOptions");

    const QStringList none;
    const QString demo = QStringLiteral("demo.ibt");
    const QString odd = QStringLiteral("odd.laps");
    const QString every = QStringLiteral("1,2,3,4,5");
    QTest::newRow("csv: recording") << "csv" << demo << every << none << none;
    QTest::newRow("csv: one lap") << "csv" << demo << "2" << none << none;
    QTest::newRow("csv: units in the header")
        << "csv" << demo << "2" << QStringList{"--units", "header"}
        << QStringList{"--units", "header"};
    QTest::newRow("csv: odd samples") << "csv" << odd << "1,2,3" << none << none;
    QTest::newRow("csv: odd samples, no units")
        << "csv" << odd << "1,2,3" << QStringList{"--units", "none"}
        << QStringList{"--units", "none"};
    QTest::newRow("csv: odd samples, semicolons, units in the header")
        << "csv" << odd << "1,2" << QStringList{"--sep", ";", "--units", "header"}
        << QStringList{"--sep", ";", "--units", "header"};
    QTest::newRow("csv: odd samples, tabs")
        << "csv" << odd << "2" << QStringList{"--sep", "tab"} << QStringList{"--sep", "\t"};
    QTest::newRow("numpy: recording") << "numpy" << demo << every << none << none;
    QTest::newRow("numpy: odd samples")
        << "numpy" << odd << "1,2,3" << QStringList{"--sep", "tab"} << QStringList{"--sep", "\t"};
    QTest::newRow("json: recording") << "json" << demo << every << none << none;
    QTest::newRow("json: odd samples") << "json" << odd << "1,2,3" << none << none;
    QTest::newRow("json: laps in another order") << "json" << odd << "3,1" << none << none;
    QTest::newRow("mat: recording") << "mat" << demo << every << none << none;
    QTest::newRow("mat: odd samples") << "mat" << odd << "1,2,3" << none << none;
    QTest::newRow("mat: one lap") << "mat" << odd << "1" << none << none;
}

void tst_ExportReaders::same()
{
    QFETCH(QString, reader);
    QFETCH(QString, recording);
    QFETCH(QString, laps);
    QFETCH(QStringList, options);
    QFETCH(QStringList, readerOptions);
    const QString format = reader == QLatin1String("numpy") ? QStringLiteral("csv") : reader;
    const QString output = QStringLiteral("out.") + format;
    exported(options + QStringList{recording, "--lap", laps, "--output", output});
    if (QTest::currentTestFailed())
        return;
    QCOMPARE(readBack(QStringList{reader, recording + QStringLiteral(".bits"), output, laps}
                      + readerOptions),
             QString());
}

void tst_ExportReaders::differenceIsFound_data()
{
    QTest::addColumn<QString>("reader");
    QTest::addColumn<QByteArray>("from");
    QTest::addColumn<QByteArray>("to");

    QTest::newRow("csv: last digit") << "csv" << QByteArray(",0.1,") << QByteArray(",0.11,");
    QTest::newRow("csv: sign of zero") << "csv" << QByteArray(",-0,") << QByteArray(",0,");
    QTest::newRow("csv: unit") << "csv" << QByteArray("m/s") << QByteArray("m");
    QTest::newRow("json: last digit")
        << "json" << QByteArray("[0,-0.0,0.1]") << QByteArray("[0,-0.0,0.10000000000000002]");
    QTest::newRow("json: missing sample") << "json" << QByteArray("[1,null") << QByteArray("[1,0");
    // 0.1, and the next greater number.
    QTest::newRow("mat: last bit") << "mat" << QByteArray::fromHex("9a9999999999b93f")
                                   << QByteArray::fromHex("9b9999999999b93f");
}

void tst_ExportReaders::differenceIsFound()
{
    QFETCH(QString, reader);
    QFETCH(QByteArray, from);
    QFETCH(QByteArray, to);
    const QString name = QStringLiteral("wrong.") + reader;
    exported({"odd.laps", "--lap", "1,2", "--output", name});
    if (QTest::currentTestFailed())
        return;
    QFile output(file(name));
    QVERIFY(output.open(QIODevice::ReadOnly));
    QByteArray content = output.readAll();
    output.close();
    const int place = content.indexOf(from);
    QVERIFY(place > 0);
    write(name, content.replace(place, from.size(), to));
    const QString error = readBack({reader, "odd.laps.bits", name, "1,2"});
    QVERIFY2(error.startsWith(QLatin1String("readback.py: ")), qPrintable(error));
}

NAPAMMUL_TEST(tst_ExportReaders)
#include "tst_exportreaders.moc"
