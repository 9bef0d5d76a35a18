#pragma once

/// The milliseconds that a test waits for a process to end. They are enough for a busy machine, and
/// fewer than the five minutes after which Qt Test aborts a test function, without naming the
/// process.
constexpr int ProcessLimit = 4 * 60 * 1000;
