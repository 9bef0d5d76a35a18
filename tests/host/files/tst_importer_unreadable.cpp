// Importing a file that the system does not read to its end.

#include "host/files/importer.h"
#include "host/files/pluginregistry.h"
#include "host/text/terminal.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <cstddef>

#include <dlfcn.h>
#include <unistd.h>

namespace {

/// What reading fails with after the first part of a file; 0 if it does not fail.
int readError = 0;

} // namespace

/// Takes the place of the C library's function in this program and in Qt.
extern "C" __attribute__((visibility("default"))) ssize_t read(int file, void *to, std::size_t size)
{
    using Function = ssize_t (*)(int, void *, std::size_t);
    static const auto read = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "read"));
    if (readError == 0 || ::lseek(file, 0, SEEK_CUR) == 0)
        return read(file, to, size);
    errno = readError;
    return -1;
}

class tst_ImporterUnreadable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void says_data();
    void says();
};

void tst_ImporterUnreadable::says_data()
{
    QTest::addColumn<int>("error");
    QTest::newRow("read to its end") << 0;
    QTest::newRow("broken disk") << EIO;
    QTest::newRow("network disk that is gone") << ESTALE;
}

void tst_ImporterUnreadable::says()
{
    QFETCH(int, error);
    QTemporaryDir folder;
    QFile sheet(folder.filePath(QStringLiteral("race.laps")));
    QVERIFY(sheet.open(QIODevice::WriteOnly));
    sheet.write("lap|1|1|60000|1|1|1\n");
    sheet.close();
    const PluginRegistry plugins({QStringLiteral(LAPSHEET_PLUGIN_PATH)});
    Terminal terminal;
    Importer importer(plugins, terminal, false);
    readError = error;
    const std::optional<ImportedFile> file = importer.import(sheet.fileName());
    readError = 0;
    // The plug-in takes the error for the end of the file.
    QVERIFY(file.has_value());
    QCOMPARE(int(file->laps.size()), 1);
    QCOMPARE(file->isWhole, error == 0);
}

QTEST_GUILESS_MAIN(tst_ImporterUnreadable)
#include "tst_importer_unreadable.moc"
