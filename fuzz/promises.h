// What an import promises whatever the file.
#pragma once

#include "tests/support/importfixture.h"

/// The first promise that the import of \a fileName broke; empty if it kept them all.
///
/// Looks at everything that a host can reach: messages and their order, then of every lap its
/// header, counters, values, channels and samples.
QString brokenPromise(const ImportResult &result, const QString &fileName);
