#pragma once

#include <QtTest>

/// The test classes of one program: its main() runs the one whose file is named by the first
/// argument ("tst_lap" for tst_lap.cpp), with the other arguments those of Qt Test, or all of them
/// without any argument.
namespace RoomTests {

using Run = int (*)(int argc, char **argv);

/// Adds the class in \a file.
bool add(const char *file, Run run);

} // namespace RoomTests

/// Makes \a Class a test of its room's program. Stands once, at the end of its file.
#define NAPAMMUL_TEST(Class)                                                                       \
    static const bool isAdded = RoomTests::add(__FILE__, [](int argc, char **argv) {               \
        Class test;                                                                                \
        return QTest::qExec(&test, argc, argv);                                                    \
    });
