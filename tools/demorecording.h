#pragma once

#include "tools/demooptions.h"

class QIODevice;

/// Writes the recording of a demo drive to \a device, record by record: an hour needs about 230 MB
/// there, but hardly any memory. The device must be open for writing, at its beginning, and able to
/// seek. False if a write fails; QIODevice::errorString() then says why.
bool writeDemoRecording(const DemoOptions &options, QIODevice *device);
