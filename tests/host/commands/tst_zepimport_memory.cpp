// zepimport where the system gives it little memory.

#include "tests/support/roomtests.h"
#include "tests/support/zepimportprocess.h"
#include "tools/recording.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {

/// Sound, with a session info that takes a lot to read.
QByteArray recordingOfALongText()
{
    QByteArray text = Recording::plainSessionInfo().chopped(4) + "Numbers:\n";
    for (int i = 0; i < 200000; ++i)
        text += " - Number: " + QByteArray::number(i) + '\n';
    Recording recording;
    recording.sessionInfo(text + "...\n").set("IsOnTrack", 1);
    return recording.ticks(100).bytes();
}

} // namespace

class tst_ZepimportMemory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyFileIsTold_data();
    void everyFileIsTold();

private:
    Outcome run(int megabytes, const QStringList &arguments) const;

    QTemporaryDir m_dir;
    int m_least = 0; ///< megabytes that a small recording takes
};

Outcome tst_ZepimportMemory::run(int megabytes, const QStringList &arguments) const
{
    ZepimportProcess process;
    process.folder = m_dir.path();
    process.program = QStringLiteral("/bin/bash");
    process.arguments = QStringList{"-c", "ulimit -v $1; shift; exec \"$@\"", "bash",
                                    QString::number(megabytes * 1000), ZEPIMPORT_PATH}
        + arguments;
    return process.run();
}

void tst_ZepimportMemory::initTestCase()
{
    const auto write = [this](const char *name, const QByteArray &bytes) {
        QFile file(m_dir.filePath(QLatin1String(name)));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    };
    QVERIFY(write("long.ibt", recordingOfALongText()));
    Recording sound;
    QVERIFY(write("sound.ibt", sound.set("IsOnTrack", 1).ticks(100).bytes()));

    for (m_least = 20; m_least < 1000; m_least += 5) {
        if (run(m_least, {"check", "sound.ibt"}).exitCode == 0)
            break;
    }
    QVERIFY(m_least < 1000);
}

void tst_ZepimportMemory::everyFileIsTold_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("complaint");
    QTest::newRow("check") << QStringList{"check", "long.ibt", "sound.ibt"}
                           << "there is not enough memory to look into the recording";
    QTest::newRow("laps") << QStringList{"laps", "long.ibt", "sound.ibt"}
                          << "IBT import error:  Failed to read irsdk_varHeader";
}

/// A recording that takes too much costs itself alone.
void tst_ZepimportMemory::everyFileIsTold()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, complaint);

    int complaints = 0;
    int whole = 0;
    for (int megabytes = m_least; megabytes < m_least + 200; megabytes += 10) {
        const Outcome outcome = run(megabytes, arguments);
        QVERIFY2(outcome.output.contains(QLatin1String("sound.ibt")), qPrintable(outcome.output));
        const bool hasComplained = QString(outcome.output + outcome.errors).contains(complaint);
        QCOMPARE(outcome.exitCode, hasComplained ? 1 : 0);
        complaints += hasComplained ? 1 : 0;
        whole += hasComplained ? 0 : 1;
    }
    QVERIFY(complaints > 0);
    QVERIFY(whole > 0);
}

NAPAMMUL_TEST(tst_ZepimportMemory)
#include "tst_zepimport_memory.moc"
