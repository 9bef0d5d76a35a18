#pragma once

#include "analysis/laps.h"

#include <QByteArray>

/// Bytes that are the same for laps in which a host sees no difference: headers, values, and
/// channels bit by bit. Ids and the time of the import are left out, since they are new each time.
QByteArray fingerprint(const Laps &laps);
