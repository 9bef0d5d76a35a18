// Recordings that are sound in every part and still ask for more time or memory than they are
// worth.
#pragma once

#include <QByteArray>
#include <QVector>

/// One kind of them.
struct HostileKind {
    const char *name;
    /// A recording of about \a bytes bytes.
    QByteArray (*make)(int bytes);
    bool makesLaps; ///< more than two
    bool isRefused; ///< from 64 KB on
};

const QVector<HostileKind> &hostileKinds();

/// The one called \a name, which has to be one of them.
const HostileKind &hostileKind(const char *name);
