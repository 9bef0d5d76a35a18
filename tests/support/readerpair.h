// Runs the product's telemetry reader and the plain one side by side.
#pragma once

#include "reader/irtelemetryreader.h"
#include "tests/reference/reader.h"
#include "tests/support/comparelaps.h"
#include "tests/support/randomrecording.h"
#include "tools/random.h"

#include <QStringList>

#include <memory>
#include <vector>

/// Two readers on which the same operations are called, in orders that ordinary callers never use.
class ReaderPair
{
public:
    /// With \a compiled, compileVariables() is called on the product's reader at some point. From
    /// then on, operations that would break its promise are left out.
    ReaderPair(std::uint32_t seed, bool compiled);
    ~ReaderPair();

    /// One tick of the recording or one other operation.
    void step();
    /// Compares only what does not change the state of the readers; empty if nothing differs.
    QString quickDifference();
    /// Compares everything that a reader can return; empty if nothing differs.
    QString difference();
    /// The latest operations, for the report of a difference.
    QString log() const { return m_log.join(QLatin1String(", ")); }

private:
    /// A variable table with the header that contains its size.
    struct Table {
        irsdk_header header;
        QVector<irsdk_varHeader> variables;
    };

    void note(const QString &operation);
    void makeTables(std::uint32_t seed);

    void tick();
    void prepareTick();
    void getRawData();
    void processData();

    void otherOperation();
    void editSession();
    void editSample(int car);
    void editLap(int car);
    void editChannel(int car);
    void editNames(int car);
    void finish(int car);
    void keepLap(int car);
    void compile();

    QString carDifference(int car);
    int anyCar();
    QString anyName();
    QVariant anyValue();

    Random m_random;
    bool m_compiled;
    bool m_isCompiled = false;
    double m_oddness;
    RandomRecording m_recording;
    RandomRecording m_otherRecording;
    std::vector<std::unique_ptr<Table>> m_tables; ///< the first one is the recording's own
    int m_nextRecord = 0;

    iRTelemetryReader m_product;
    reference::Reader m_expected;
    LapComparison m_comparison;
    QVector<ZEP::Lap> m_keptLaps;
    QVector<reference::Lap> m_expectedKeptLaps;
    QStringList m_log;
};
