#pragma once

#include "model/lap.h"

#include <QByteArray>
#include <QVector>

#include <memory>
#include <optional>
#include <vector>

class ZepPluginInterfaceImport;

using Laps = std::vector<std::unique_ptr<ZEP::Lap>>;

/// The built plug-in, loaded as a host loads it. Ends the program if that fails.
ZepPluginInterfaceImport *plugin();

/// Imports a file through plugin().
Laps importFile(const QByteArray &fileName);

/// The number of samples in all channels of all laps.
qint64 sampleCount(const Laps &laps);
/// The number of samples in the laps' first channels.
qint64 tickCount(const Laps &laps);
/// The number of complete records of a sound recording.
qint64 recordCount(const QByteArray &fileName);
