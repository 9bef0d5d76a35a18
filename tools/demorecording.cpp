#include "tools/demorecording.h"

#include "tools/demosession.h"
#include "tools/demovariables.h"
#include "tools/drive.h"
#include "tools/recording.h"
#include "tools/variablevalue.h"

#include <QIODevice>

namespace {

// One element of the record that changes from tick to tick.
struct Element {
    int offset;
    qint32 type;
    DemoVariable::Source source;
    int index;
};

bool writeAll(QIODevice *device, const char *bytes, qint64 size)
{
    return device->write(bytes, size) == size;
}

} // namespace

bool writeDemoRecording(const DemoOptions &options, QIODevice *device)
{
    Drive drive(options);
    const DemoVariables variables(options);

    Recording head = Recording::empty();
    head.tickRate(options.rate);
    for (const DemoVariable &each : variables.list())
        head.variable(each.variable);
    head.sessionInfo(
        demoSessionInfo(drive.weekend(), drive.circuit(), drive.pace(), drive.car().fuel));
    if (!head.write(device))
        return false;

    QByteArray record(head.recordSize(), '\0');
    QVector<Element> elements;
    for (const DemoVariable &each : variables.list()) {
        const RecordingVariable &variable = each.variable;
        const int offset = head.offsetOf(variable.name);
        if (!each.source)
            storeVariableValue(record.data() + offset, variable.type, each.value);
        else
            for (int i = 0; i < variable.count; ++i)
                elements.append({offset + i * irsdk_varTypeSize(variable.type), variable.type,
                                 each.source, each.index + i});
    }

    irsdk_diskSubHeader sub{};
    sub.sessionStartDate = drive.weekend().startDate;
    while (drive.advance()) {
        if (sub.sessionRecordCount == 0)
            sub.sessionStartTime = drive.time();
        sub.sessionEndTime = drive.time();
        sub.sessionLapCount = drive.laps().lap() + 1;
        ++sub.sessionRecordCount;
        for (const Element &element : elements)
            storeVariableValue(record.data() + element.offset, element.type,
                               element.source(drive, element.index));
        if (!writeAll(device, record.constData(), record.size()))
            return false;
    }

    // Only known at the end.
    const qint64 end = device->pos();
    return device->seek(Recording::HeaderSize)
        && writeAll(device, reinterpret_cast<const char *>(&sub), sizeof sub) && device->seek(end);
}
