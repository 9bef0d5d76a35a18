// Ways to damage a recording, for measuring what an inspection sees of each.
#pragma once

#include "ibt/ibtformat.h"

#include <QByteArray>
#include <QVector>

#include <cstdint>

/// A recording taken apart, so that each part can be damaged.
struct RecordingParts {
    /// \a bytes is a sound recording: headers, table, text and records, in this order.
    explicit RecordingParts(const QByteArray &bytes);

    /// The file with all its parts, whose places and sizes are put into the header.
    QByteArray bytes() const;

    irsdk_header header;
    irsdk_diskSubHeader subHeader;
    QByteArray table;
    QByteArray text; ///< as long as the header has it
    QByteArray records;
};

/// One way to damage a recording.
struct DamageKind {
    const char *part; ///< that is damaged: "records"
    const char *name; ///< "a record that is zero"
    /// A damaged copy of \a sound; the same for the same \a seed.
    QByteArray (*damaged)(const RecordingParts &sound, std::uint32_t seed);
};

const QVector<DamageKind> &damageKinds();
