#pragma once

#include "model/lap.h"

#include <memory>
#include <vector>

/// The laps of one file, in the order of the plug-in.
using Laps = std::vector<std::unique_ptr<ZEP::Lap>>;
