#include "tests/support/demofile.h"
#include "tests/support/processlimit.h"
#include "tests/support/roomtests.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

class tst_Ibtgen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void sameSeedSameBytes_data();
    void sameSeedSameBytes();
    void headers_data();
    void headers();
    void table();
    void duration();
    void sessionText_keys_data();
    void sessionText_keys();
    void sessionText_dialect_data();
    void sessionText_dialect();
    void failingDevice();
    void program_writes();
    void program_keepsFiles();
    void program_refuses_data();
    void program_refuses();
    void program_fullDevice_data();
    void program_fullDevice();
    void program_tells_data();
    void program_tells();

private:
    void addSessions();

    QScopedPointer<DemoFile> m_practice;
};

void tst_Ibtgen::initTestCase()
{
    m_practice.reset(new DemoFile(shortDrive()));
    QVERIFY(m_practice->ok);
}

void tst_Ibtgen::addSessions()
{
    QTest::addColumn<SessionKind>("session");
    QTest::newRow("testing") << SessionKind::Testing;
    QTest::newRow("practice") << SessionKind::Practice;
    QTest::newRow("qualify") << SessionKind::Qualify;
    QTest::newRow("race") << SessionKind::Race;
}

void tst_Ibtgen::sameSeedSameBytes_data()
{
    addSessions();
}

void tst_Ibtgen::sameSeedSameBytes()
{
    QFETCH(SessionKind, session);
    DemoOptions options = shortDrive(session, 7);
    options.duration = 60;
    const DemoFile first(options);
    const DemoFile second(options);
    options.seed = 8;
    const DemoFile other(options);
    QVERIFY(first.bytes == second.bytes);
    QVERIFY(first.bytes != other.bytes);
}

void tst_Ibtgen::headers_data()
{
    QTest::addColumn<int>("rate");
    QTest::newRow("60 Hz") << 60;
    QTest::newRow("10 Hz") << 10;
    QTest::newRow("1 Hz") << 1;
    QTest::newRow("odd") << 7;
}

void tst_Ibtgen::headers()
{
    QFETCH(int, rate);
    DemoOptions options = shortDrive();
    options.rate = rate;
    const DemoFile demo(options);

    QCOMPARE(demo.header.tickRate, rate);
    QCOMPARE(demo.bytes.size(),
             demo.header.varBuf[0].bufOffset + demo.records * demo.header.bufLen);
    QCOMPARE(demo.sub.sessionRecordCount, demo.records);
    const QVector<double> time = demo.values("SessionTime");
    QCOMPARE(demo.sub.sessionStartTime, time.first());
    QCOMPARE(demo.sub.sessionEndTime, time.last());
    QCOMPARE(demo.sub.sessionLapCount, int(demo.values("Lap").last()) + 1);
    QVERIFY(demo.sub.sessionStartDate > 0);
    QVERIFY(demo.text.endsWith('\0'));
    for (int i = 1; i < demo.records; ++i)
        QVERIFY2(std::fabs(time[i] - time[i - 1] - 1.0 / rate) < 1e-9,
                 qPrintable(QString::number(i)));
}

void tst_Ibtgen::table()
{
    const DemoFile &demo = *m_practice;
    QVERIFY(demo.table.size() >= 270 && demo.table.size() <= 290);

    QSet<QByteArray> names;
    int end = 0;
    int arrays = 0;
    for (const irsdk_varHeader &variable : demo.table) {
        QVERIFY2(variable.name[irsdk_varHeader::MaxString - 1] == 0, variable.name);
        QVERIFY2(variable.desc[irsdk_varHeader::MaxDesc - 1] == 0, variable.name);
        QVERIFY2(variable.unit[irsdk_varHeader::MaxString - 1] == 0, variable.name);
        QVERIFY2(variable.desc[0] != 0, variable.name);
        QVERIFY2(irsdk_varTypeSize(variable.type) > 0, variable.name);
        QVERIFY2(!names.contains(QByteArray(variable.name).toLower()), variable.name);
        names.insert(QByteArray(variable.name).toLower());
        QCOMPARE(variable.offset, end);
        end += variable.count * irsdk_varTypeSize(variable.type);
        if (variable.count != 1) {
            ++arrays;
            QCOMPARE(variable.count, 6);
            QCOMPARE(variable.type, qint32(irsdk_float));
        }
    }
    QCOMPARE(end, demo.header.bufLen);
    QCOMPARE(arrays, 1);
}

void tst_Ibtgen::duration()
{
    DemoOptions options = shortDrive();
    options.stints = 1;
    options.duration = 300;
    const DemoFile demo(options);
    QCOMPARE(demo.records, 300 * 60);
    // More than the one stint, which lasts about two minutes.
    QVERIFY(demo.values("Lap").last() > 5);
}

void tst_Ibtgen::sessionText_keys_data()
{
    QTest::addColumn<QByteArray>("line");

    for (const char *line : {"WeekendInfo:",
                             " TrackName: .+",
                             " TrackDisplayName: .+",
                             " TrackDisplayShortName: .+",
                             " TrackConfigName: .+",
                             " TrackCity: .+",
                             " TrackCountry: .+",
                             " TrackNumTurns: [0-9]+",
                             " TrackLength: [0-9.]+ km",
                             " TrackSurfaceTemp: [0-9.]+ C",
                             " TrackAirTemp: [0-9.]+ C",
                             " TrackNorthOffset: [0-9.]+ rad",
                             " TrackSkies: .+",
                             " SessionID: [0-9]+",
                             " SubSessionID: [0-9]+",
                             " Official: [01]",
                             " Category: Road",
                             " WeekendOptions:",
                             "  WeatherTemp: [0-9.]+ C",
                             " TelemetryOptions:",
                             "SessionInfo:",
                             " Sessions:",
                             " - SessionNum: 0",
                             "   SessionType: Practice",
                             "   ResultsPositions:",
                             "CameraInfo:",
                             "RadioInfo:",
                             "DriverInfo:",
                             " DriverCarIdx: 3",
                             " DriverCarFuelMaxLtr: 40.000",
                             " DriverCarMaxFuelPct: 1.000",
                             " DriverCarFuelKgPerLtr: 0.750",
                             " Drivers:",
                             " - CarIdx: 3",
                             "   UserName: .+",
                             "   AbbrevName: .+",
                             "   Initials: .+",
                             "   TeamName: .+",
                             "   CarNumber: \"[0-9]+\"",
                             "   CarPath: .+",
                             "   CarClassID: [0-9]+",
                             "   CarID: [0-9]+",
                             "   CarScreenName: .+",
                             "   CarClassShortName: .+",
                             "   IRating: [0-9]+",
                             "   LicString: .+",
                             "   LicColor: 0x[0-9a-f]{6}",
                             "   ClubName: .+",
                             "   DivisionName: .+",
                             "SplitTimeInfo:",
                             "CarSetup:",
                             " Chassis:",
                             "  Rear:",
                             "   FuelLevel: [0-9.]+ L"})
        QTest::newRow(line) << QByteArray(line);
}

void tst_Ibtgen::sessionText_keys()
{
    QFETCH(QByteArray, line);
    const QRegularExpression expression(QStringLiteral("\n%1\n").arg(QString::fromLatin1(line)));
    QVERIFY(QString::fromLatin1(m_practice->text).contains(expression));
}

void tst_Ibtgen::sessionText_dialect_data()
{
    addSessions();
}

void tst_Ibtgen::sessionText_dialect()
{
    QFETCH(SessionKind, session);
    DemoOptions options = shortDrive(session);
    options.duration = 1;
    QByteArray text = DemoFile(options).text;
    text.chop(1); // the terminating zero
    QVERIFY(text.startsWith("---\n"));
    QVERIFY(text.endsWith("\n...\n"));

    const QStringList lines = QString::fromLatin1(text).split(QLatin1Char('\n'));
    const QRegularExpression entry(QStringLiteral("^( *)(- )?([A-Za-z0-9_]+):( [^\t]*)?$"));
    int depth = 0; // of the line before, including the dash of a list item
    for (int i = 1; i < lines.size() - 2; ++i) {
        if (lines[i].isEmpty())
            continue;
        const QRegularExpressionMatch match = entry.match(lines[i]);
        QVERIFY2(match.hasMatch(), qPrintable(lines[i]));
        QVERIFY2(lines[i].count(QStringLiteral(": ")) <= 1, qPrintable(lines[i]));
        const int indent = match.capturedLength(1) + match.capturedLength(2);
        QVERIFY2(indent <= depth + 1 || match.capturedLength(2) > 0, qPrintable(lines[i]));
        depth = indent;
    }

    const QRegularExpression type(QStringLiteral("SessionType: (.*)\n"));
    const char *const expected = session == SessionKind::Testing ? "Offline Testing"
        : session == SessionKind::Practice                       ? "Practice"
        : session == SessionKind::Qualify                        ? "Lone Qualify"
                                                                 : "Race";
    int index = 0;
    QRegularExpressionMatchIterator types = type.globalMatch(QString::fromLatin1(text));
    const int sessionNum = session == SessionKind::Qualify ? 1
        : session == SessionKind::Race                     ? 2
                                                           : 0;
    for (; types.hasNext(); ++index) {
        const QRegularExpressionMatch match = types.next();
        if (index == sessionNum)
            QCOMPARE(match.captured(1), QString::fromLatin1(expected));
    }
    QCOMPARE(index, session == SessionKind::Testing ? 1 : 3);
}

void tst_Ibtgen::failingDevice()
{
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QTest::ignoreMessage(QtWarningMsg, "QIODevice::write (QBuffer): ReadOnly device");
    QVERIFY(!writeDemoRecording(shortDrive(), &buffer));
}

void tst_Ibtgen::program_writes()
{
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("d\u00e9mo.ibt"));
    QProcess program;
    program.start(QStringLiteral(IBTGEN_PATH),
                  {QStringLiteral("--session"), QStringLiteral("race"), QStringLiteral("--laps"),
                   QStringLiteral("1"), QStringLiteral("--stints"), QStringLiteral("2"),
                   QStringLiteral("--seed"), QStringLiteral("9"), fileName});
    QVERIFY(program.waitForFinished(ProcessLimit));
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    QCOMPARE(program.readAllStandardError(), QByteArray());

    QFile file(fileName);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll() == DemoFile(shortDrive(SessionKind::Race, 9)).bytes);
}

void tst_Ibtgen::program_keepsFiles()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("mine.ibt")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write("mine"), 4);
    file.close();
    const QStringList arguments{QStringLiteral("--duration"), QStringLiteral("1"), file.fileName()};
    QProcess program;
    program.start(QStringLiteral(IBTGEN_PATH), arguments);
    QVERIFY(program.waitForFinished(ProcessLimit));
    QCOMPARE(program.exitCode(), 1);
    QCOMPARE(program.readAllStandardError(),
             "ibtgen: cannot write " + QFile::encodeName(file.fileName())
                 + ": it already exists; choose another name, or use --force to replace it\n");
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("mine"));
    file.close();

    program.start(QStringLiteral(IBTGEN_PATH), arguments + QStringList{QStringLiteral("--force")});
    QVERIFY(program.waitForFinished(ProcessLimit));
    QCOMPARE(program.exitCode(), 0);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.size() > 60 * 1000);
}

void tst_Ibtgen::program_refuses_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");

    const auto row = [](const char *name, const char *arguments, int exitCode) {
        QTest::newRow(name) << QString::fromLatin1(arguments).split(QLatin1Char(' '),
                                                                    Qt::SkipEmptyParts)
                            << exitCode;
    };
    row("no output", "", 2);
    row("two outputs", "a.ibt b.ibt", 2);
    row("unknown option", "--fast demo.ibt", 2);
    row("unknown session", "--session warmup demo.ibt", 2);
    row("no laps", "--laps 0 demo.ibt", 2);
    row("more laps than a tank", "--laps 101 demo.ibt", 2);
    row("no number", "--laps many demo.ibt", 2);
    row("no stints", "--stints 0 demo.ibt", 2);
    row("negative seed", "--seed -1 demo.ibt", 2);
    row("no rate", "--rate 0 demo.ibt", 2);
    row("no time", "--duration 0 demo.ibt", 2);
    row("a time that is no number", "--duration nan demo.ibt", 2);
    row("two ends", "--duration 60 --stints 2 demo.ibt", 2);
    row("standard output", "-", 2);
    row("no such folder", "missing/demo.ibt", 1);
    row("a folder", ".", 1);
}

void tst_Ibtgen::program_refuses()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QTemporaryDir folder;
    QProcess program;
    program.setWorkingDirectory(folder.path());
    program.start(QStringLiteral(IBTGEN_PATH), arguments);
    QVERIFY(program.waitForFinished(ProcessLimit));
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), exitCode);

    const QByteArray message = program.readAllStandardError();
    QVERIFY(!message.isEmpty());
    if (exitCode == 1) {
        QCOMPARE(message.count('\n'), 1);
        QVERIFY(message.contains(arguments.last().toLocal8Bit()));
    }
    QCOMPARE(QDir(folder.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), QStringList());
}

void tst_Ibtgen::program_fullDevice_data()
{
    QTest::addColumn<QString>("option");
    QTest::newRow("help") << QStringLiteral("--help");
    QTest::newRow("version") << QStringLiteral("--version");
}

void tst_Ibtgen::program_fullDevice()
{
    QFETCH(QString, option);
    QProcess program;
    program.setStandardOutputFile(QStringLiteral("/dev/full"));
    program.start(QStringLiteral(IBTGEN_PATH), {option});
    QVERIFY(program.waitForFinished(ProcessLimit));
    QCOMPARE(program.readAllStandardError(),
             QByteArray("ibtgen: the output could not be written; is the disk full?\n"));
    QCOMPARE(program.exitCode(), 1);
}

void tst_Ibtgen::program_tells_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("output"); // a regular expression
    QTest::newRow("help") << QStringLiteral("--help")
                          << QStringLiteral("Usage: ibtgen(.|\n)*Example:\n  ibtgen --");
    QTest::newRow("version") << QStringLiteral("--version")
                             << QStringLiteral("^ibtgen [0-9]+\\.[0-9]+\\.[0-9]+\n$");
}

void tst_Ibtgen::program_tells()
{
    QFETCH(QString, option);
    QFETCH(QString, output);
    QProcess program;
    program.start(QStringLiteral(IBTGEN_PATH), {option});
    QVERIFY(program.waitForFinished(ProcessLimit));
    QCOMPARE(program.exitCode(), 0);
    const QString text = QString::fromLocal8Bit(program.readAllStandardOutput());
    QVERIFY2(text.contains(QRegularExpression(output)), qPrintable(text));
}

NAPAMMUL_TEST(tst_Ibtgen)
#include "tst_ibtgen.moc"
