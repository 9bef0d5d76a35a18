#pragma once

#include "model/lap.h"

#include <QVector>

#include <memory>
#include <utility>

/// Laps that nobody owns yet. Deletes those that are not taken.
class LapList
{
public:
    LapList() = default;
    ~LapList() { clear(); }
    Q_DISABLE_COPY(LapList)

    void clear() { qDeleteAll(take()); }

    /// Adds a copy of \a lap, which shares its channels.
    void add(const ZEP::Lap &lap)
    {
        auto copy = std::make_unique<ZEP::Lap>(lap);
        m_laps.append(copy.get());
        copy.release();
    }

    const QVector<ZEP::Lap *> &all() const { return m_laps; }
    int count() const { return m_laps.size(); }
    QVector<ZEP::Lap *> take() { return std::exchange(m_laps, {}); }

private:
    QVector<ZEP::Lap *> m_laps;
};
