#pragma once

#include "host/files/importedfile.h"

#include <QVector>

/// An imported file, and which of its laps were chosen.
struct ChosenLaps {
    ImportedFile file;
    QVector<int> indices; ///< of laps of the file, in the order chosen; at least one

    const ZEP::Lap &lap(int index) const { return *file.laps[std::size_t(index)]; }
    /// The chosen laps.
    QVector<const ZEP::Lap *> laps() const
    {
        QVector<const ZEP::Lap *> result;
        for (const int index : indices)
            result.append(&lap(index));
        return result;
    }
};
