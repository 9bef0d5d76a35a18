// The telemetry reader means the same in whatever order its operations are asked for.
//
// NAPAMMUL_INTERLEAVING_SEEDS is the number of runs of each kind, NAPAMMUL_INTERLEAVING_FIRST the
// seed of the first one. A run that fails is made again by its seed alone.
#include "tests/support/readerpair.h"
#include "tests/support/roomtests.h"

#include <QTest>

namespace {

constexpr int DefaultSeeds = 200;
constexpr int Steps = 500;

/// What the readers report of completed laps, since the last step.
QStringList reports;

void collectReports(QtMsgType, const QMessageLogContext &, const QString &message)
{
    if (message.startsWith(QLatin1String("lap completed")))
        reports.append(message);
}

/// True if every report came from both readers.
bool reportsArePaired()
{
    reports.sort();
    bool paired = reports.size() % 2 == 0;
    for (int i = 0; paired && i < reports.size(); i += 2)
        paired = reports.at(i) == reports.at(i + 1);
    reports.clear();
    return paired;
}

int number(const char *environmentVariable, int unset)
{
    return qEnvironmentVariableIsSet(environmentVariable)
        ? qEnvironmentVariableIntValue(environmentVariable)
        : unset;
}

} // namespace

class tst_Interleaving : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void operations_data();
    void operations();

private:
    QtMessageHandler m_handler = nullptr;
};

void tst_Interleaving::init()
{
    m_handler = qInstallMessageHandler(collectReports);
}

void tst_Interleaving::cleanup()
{
    qInstallMessageHandler(m_handler);
}

void tst_Interleaving::operations_data()
{
    QTest::addColumn<uint>("seed");
    QTest::addColumn<bool>("compiled");

    const int first = number("NAPAMMUL_INTERLEAVING_FIRST", 0);
    const int count = number("NAPAMMUL_INTERLEAVING_SEEDS", DefaultSeeds);
    for (int seed = first; seed < first + count; ++seed) {
        QTest::addRow("plain, seed %d", seed) << uint(seed) << false;
        QTest::addRow("compiled, seed %d", seed) << uint(seed) << true;
    }
}

void tst_Interleaving::operations()
{
    QFETCH(uint, seed);
    QFETCH(bool, compiled);

    ReaderPair readers(seed, compiled);
    // Comparing everything is itself an operation that collected records notice, so it is rare.
    Random random(seed);
    const double everything = seed % 2 == 0 ? 0.02 : 0.2;
    for (int step = 0; step < Steps; ++step) {
        readers.step();
        const bool compareAll = step == Steps - 1 || random.uniform() < everything;
        const QString found = compareAll ? readers.difference() : readers.quickDifference();
        QVERIFY2(found.isEmpty(),
                 qPrintable(
                     QStringLiteral("step %1: %2; after %3").arg(step).arg(found, readers.log())));
        QVERIFY2(reportsArePaired(), qPrintable(readers.log()));
    }
}

NAPAMMUL_TEST(tst_Interleaving)
#include "tst_interleaving.moc"
