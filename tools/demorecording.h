#pragma once

#include "tools/demooptions.h"

class QIODevice;

/// Writes the recording of a demo drive to \a device, record by record: an hour takes about 230 MB
/// there and next to nothing in memory. The device must be open for writing, at its beginning, and
/// able to seek. False when a write fails; QIODevice::errorString() then tells why.
bool writeDemoRecording(const DemoOptions &options, QIODevice *device);
