// What an import promises for any file.
#pragma once

#include "tests/support/importfixture.h"

/// The first promise that the import of \a fileName broke; empty if it kept them all.
///
/// Looks at everything that a host can reach: messages and their order, then the header, counters,
/// values, channels and samples of every lap.
QString brokenPromise(const ImportResult &result, const QString &fileName);
