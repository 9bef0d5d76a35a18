#pragma once

#include "ibt/ibtformat.h"

class FindingList;

/// Adds to \a findings what is wrong with the variables of a table, \a header.numVars entries:
/// which of them make no channel, or one with values other than their own.
void inspectVariables(const irsdk_header &header, const irsdk_varHeader *table,
                      FindingList *findings);
