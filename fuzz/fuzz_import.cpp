// Input: a recording. It is imported as a host imports it, and everything in the laps is read. They
// must be the same as with the plain importer. An inspection must know why there are none.

#include "fuzz/memoryfile.h"
#include "fuzz/promises.h"
#include "fuzz/require.h"
#include "inspect/recordinginspection.h"
#include "plugin/irpluginimport.h"
#include "tests/reference/importfile.h"
#include "tests/support/comparelaps.h"

#include <cstdint>

#include <unistd.h>

namespace {

/// The descriptor that the next file would get. It stays the same unless a file was left open.
int nextDescriptor()
{
    const int descriptor = ::dup(STDERR_FILENO);
    ::close(descriptor);
    return descriptor;
}

ImportResult importWithPlugin(iRPluginImport *plugin, const QString &fileName)
{
    ImportResult result;
    const auto connection = QObject::connect(plugin->dataEmitter(), &ZepDataEmitter::sendMessage,
                                             [&result](const QString &text, int level) {
                                                 result.messages.append({text, level});
                                             });
    const auto laps = plugin->import(fileName, QLatin1String(ImportFixture::Format), {});
    QObject::disconnect(connection);
    for (ZEP::Lap *lap : laps)
        result.laps.emplace_back(lap);
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static iRPluginImport plugin;
    MemoryFile file;
    require(file.write(reinterpret_cast<const char *>(data), size), "the input can be written");

    const int descriptor = nextDescriptor();
    const ImportResult result = importWithPlugin(&plugin, file.name());
    require(nextDescriptor() == descriptor, "no file stays open");
    require(brokenPromise(result, file.name()));

    const RecordingInspection inspection(file.name());
    require(inspection.isImportable() || result.laps.empty(), "laps of an importable file only");
    require(inspection.isImportable() || !inspection.findings().isEmpty(), "a finding");

    const reference::Import expected =
        reference::importFile(file.name(), QLatin1String(ImportFixture::Format));
    if (result.laps.empty() || expected.laps.isEmpty()) {
        require(result.messages.last().text == expected.messages.last().text, "the same error");
        return 0;
    }
    QVector<ZEP::Lap *> laps;
    for (const auto &lap : result.laps)
        laps.append(lap.get());
    require(LapComparison().difference(laps, expected.laps));
    require(sharingDifference(laps, expected.laps));
    return 0;
}
