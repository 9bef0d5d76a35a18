#include "tests/support/roomtests.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QMap>

#include <cstdio>

namespace {

/// By name. The class that is added first creates it, before main().
QMap<QByteArray, RoomTests::Run> &tests()
{
    static QMap<QByteArray, RoomTests::Run> all;
    return all;
}

} // namespace

bool RoomTests::add(const char *file, Run run)
{
    tests().insert(QFileInfo(QString::fromLocal8Bit(file)).baseName().toUtf8(), run);
    return true;
}

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    if (argc < 2) {
        int failed = 0;
        for (const RoomTests::Run run : qAsConst(tests()))
            failed += run(argc, argv);
        return failed;
    }
    const RoomTests::Run run = tests().value(argv[1]);
    if (!run) {
        std::fprintf(stderr, "there is no test '%s'; there are %s\n", argv[1],
                     tests().keys().join(", ").constData());
        return 2;
    }
    argv[1] = argv[0];
    return run(argc - 1, argv + 1);
}
