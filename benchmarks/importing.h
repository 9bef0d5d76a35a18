#pragma once

#include "model/lap.h"

#include <QByteArray>
#include <QVector>

#include <memory>
#include <optional>
#include <vector>

class ZepPluginInterfaceImport;

using Laps = std::vector<std::unique_ptr<ZEP::Lap>>;

/// The built plug-in, loaded as a host does. Ends the program where that fails.
ZepPluginInterfaceImport *plugin();

/// Imports a file through plugin().
Laps importFile(const QByteArray &fileName);

/// Samples of all laps, over all channels.
qint64 sampleCount(const Laps &laps);
/// Samples of the laps' first channels.
qint64 tickCount(const Laps &laps);
/// Complete records of a sound recording.
qint64 recordCount(const QByteArray &fileName);
