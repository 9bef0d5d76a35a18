#pragma once

#include <benchmark/benchmark.h>

class Inputs;
class QString;

/// Whole imports and what they are compared with.
void registerImports(const Inputs &inputs);
/// The stages of an import, one by one; \a small: once each.
void registerStages(const Inputs &inputs, bool small);

/// Ends a benchmark whose result is wrong, and makes the program fail. True if \a problem is null.
bool isRight(benchmark::State &state, const QString &problem);
