#pragma once

#include <QTest>

/// The test classes of one program. Its main() runs the class whose file the first argument names
/// ("tst_lap" for tst_lap.cpp); the other arguments are those of Qt Test. Without any argument, it
/// runs all classes.
namespace RoomTests {

using Run = int (*)(int argc, char **argv);

/// Adds the class in \a file.
bool add(const char *file, Run run);

} // namespace RoomTests

/// Makes \a Class a test of its room's program. Write it once, at the end of the file.
#define NAPAMMUL_TEST(Class)                                                                       \
    static const bool Class##IsAdded = RoomTests::add(__FILE__, [](int argc, char **argv) {        \
        Class test;                                                                                \
        return QTest::qExec(&test, argc, argv);                                                    \
    });
