#pragma once

#include <QString>

#include <cstdio>
#include <cstdlib>

/// Ends the program and prints \a broken, unless that is empty. A fuzzer then keeps the input.
inline void require(const QString &broken)
{
    if (broken.isEmpty())
        return;
    std::fprintf(stderr, "broken promise: %s\n", qPrintable(broken));
    std::abort();
}

inline void require(bool kept, const char *promise)
{
    if (!kept)
        require(QString::fromLatin1(promise));
}
