#include "writers/lapwriter.h"

LapWriter::~LapWriter() = default;
