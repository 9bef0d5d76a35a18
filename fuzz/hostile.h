// Recordings that are sound in every part, and still would need far too much time or memory.
#pragma once

#include <QByteArray>
#include <QVector>

/// One kind of them.
struct HostileKind {
    const char *name;
    /// A recording of about \a bytes bytes.
    QByteArray (*make)(int bytes);
    bool makesLaps; ///< an import returns more than two laps
    bool isRefused; ///< an import refuses it if it has 64 KB or more
};

const QVector<HostileKind> &hostileKinds();

/// The one called \a name, which must exist.
const HostileKind &hostileKind(const char *name);
