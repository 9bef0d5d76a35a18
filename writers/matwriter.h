#pragma once

#include "writers/lapwriter.h"
#include "writers/outputbuffer.h"

#include <utility>
#include <vector>

class MatOutput;

/// Writes laps as a MATLAB 5 file with one variable, the struct array "laps": "file", "lap" (its
/// number), "header", "values" and "calculatedValues" as headerJson() has them, "channels" and
/// "calculatedChannels" with a column vector for each channel, NaN where a sample is missing, and
/// "units" and "calculatedUnits" with the unit of each.
///
/// Names become field names: what is no ASCII letter, digit or underscore becomes an underscore,
/// and a name that does not begin with a letter gets an "x" before it.
class MatWriter : public LapWriter
{
public:
    /// \a fileName is where the laps come from. \a file must outlive the writer.
    MatWriter(OutputFile &file, const QVector<ChosenChannel> &channels, const QString &fileName);

    void write(int number, std::unique_ptr<ZEP::Lap> lap) override;
    bool finish(QString *problem) override;

private:
    void writeLaps(MatOutput &out) const;

    OutputBuffer m_buffer;
    QVector<ChosenChannel> m_channels;
    QString m_fileName;
    std::vector<std::pair<int, std::unique_ptr<ZEP::Lap>>> m_laps;
};
