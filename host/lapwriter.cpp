#include "host/lapwriter.h"

LapWriter::~LapWriter() = default;
