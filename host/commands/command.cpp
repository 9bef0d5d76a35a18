#include "host/commands/command.h"

Command::~Command() = default;
