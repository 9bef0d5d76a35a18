#pragma once

#include <benchmark/benchmark.h>

class Inputs;
class QString;

/// Whole imports and what they are compared with.
void registerImports(const Inputs &inputs);
/// The stages of an import, one by one. With \a small, each runs once.
void registerStages(const Inputs &inputs, bool small);

/// True if \a problem is null. Otherwise it ends the benchmark and makes the program fail.
bool isRight(benchmark::State &state, const QString &problem);
