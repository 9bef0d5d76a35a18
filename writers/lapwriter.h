#pragma once

#include "analysis/chosenchannel.h"
#include "model/lap.h"

#include <QString>
#include <QVector>

#include <memory>

/// Writes laps to a file in one format. First the laps, then finish().
class LapWriter
{
public:
    LapWriter() = default;
    LapWriter(const LapWriter &) = delete;
    LapWriter &operator=(const LapWriter &) = delete;
    virtual ~LapWriter();

    /// Writes a lap, and deletes it as soon as the format allows. \a number is its # in the file
    /// that it was imported from.
    virtual void write(int number, std::unique_ptr<ZEP::Lap> lap) = 0;

    /// Writes what belongs after the last lap. False with a \a problem if the format cannot contain
    /// the laps; whether they could be written is for the file to say.
    virtual bool finish(QString *problem) = 0;
};
