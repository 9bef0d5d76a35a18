#pragma once

#include "writers/lapwriter.h"
#include "writers/outputbuffer.h"

#include <vector>

/// Writes laps as a JSON array with an object for each: "file", "lap" (its number), "header",
/// "values" and "calculatedValues" as headerJson() has them, "channels" and "calculatedChannels" by
/// name, each an object of "unit" and "samples", where null is a missing sample. A lap is one line.
class JsonLapWriter : public LapWriter
{
public:
    /// \a fileName is where the laps come from. \a file must outlive the writer.
    JsonLapWriter(OutputFile &file, const QVector<ChosenChannel> &channels,
                  const QString &fileName);

    void write(int number, std::unique_ptr<ZEP::Lap> lap) override;
    bool finish(QString *problem) override;

private:
    /// A channel, with what is written of it for every lap that has it in the same unit.
    struct Column {
        ChosenChannel channel;
        QByteArray name; ///< as JSON
        QString unit;
        QByteArray head; ///< up to the samples
    };

    void writeChannels(const ZEP::Lap &lap, bool calculated);
    void writeSamples(const QVector<double> &samples);

    OutputBuffer m_buffer;
    std::vector<Column> m_columns;
    QByteArray m_fileName; ///< as JSON
    bool m_isFirst = true;
};
