#pragma once

#include "writers/lapwriter.h"
#include "writers/outputbuffer.h"

/// Writes laps as lines of comma-separated values, one for each tick: the lap's number, the tick
/// from 0, and a sample of each channel, empty where it is missing.
///
/// Names and units are somebody else's data, and spreadsheets run a cell that begins with "=". So
/// one that begins with = + - @, a tab, the end of a line or an apostrophe gets an apostrophe
/// before it; readers have every name exactly by taking away one apostrophe at its beginning.
class CsvWriter : public LapWriter
{
public:
    /// Where the channels' units are.
    enum class Units {
        Header, ///< after the names: "speed [m/s]"
        Row, ///< in a line of their own below the names
        None,
    };

    /// How the lines look.
    struct Form {
        Units units = Units::Row;
        char separator = ',';
        bool hasTime = false; ///< a column after the tick: seconds as in TickTrace
    };

    /// The titles and the units of \a channels come from \a laps. \a file must outlive the
    /// writer.
    CsvWriter(OutputFile &file, const QVector<ChosenChannel> &channels,
              const QVector<const ZEP::Lap *> &laps, const Form &form);

    void write(int number, std::unique_ptr<ZEP::Lap> lap) override;
    bool finish(QString *problem) override;

private:
    /// A channel of the lap that is being written.
    struct Column {
        const double *samples;
        int size;
        double last; ///< the sample that 'text' shows
        int textSize;
        char text[1 + OutputBuffer::NumberSize]; ///< with the separator before it
    };

    QByteArray field(const QString &text) const;
    void writeHeader(const QVector<const ZEP::Lap *> &laps);
    char *writeRow(char *place, int tick, std::vector<Column> &columns) const;

    OutputBuffer m_buffer;
    QVector<ChosenChannel> m_channels;
    Form m_form;
};
