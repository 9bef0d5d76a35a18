#pragma once

#include "tools/demorecording.h"
#include "tools/recording.h"

#include <QBuffer>
#include <QMetaType>
#include <QVector>

#include <cstring>

Q_DECLARE_METATYPE(SessionKind)

/// A drive of two stints with one timed lap each.
inline DemoOptions shortDrive(SessionKind session = SessionKind::Practice, quint32 seed = 1)
{
    DemoOptions options;
    options.session = session;
    options.laps = 1;
    options.stints = 2;
    options.seed = seed;
    return options;
}

/// A demo recording, taken apart. It lives in memory.
class DemoFile
{
public:
    explicit DemoFile(const DemoOptions &options)
    {
        QBuffer buffer(&bytes);
        ok = buffer.open(QIODevice::WriteOnly) && writeDemoRecording(options, &buffer);
        if (!ok)
            return;
        std::memcpy(&header, bytes.constData(), sizeof header);
        std::memcpy(&sub, bytes.constData() + sizeof header, sizeof sub);
        table.resize(header.numVars);
        std::memcpy(table.data(), bytes.constData() + header.varHeaderOffset,
                    std::size_t(header.numVars) * sizeof(irsdk_varHeader));
        text = bytes.mid(header.sessionInfoOffset, header.sessionInfoLen);
        records = (bytes.size() - header.varBuf[0].bufOffset) / header.bufLen;
    }

    /// All values of one variable; empty if there is no such variable.
    QVector<double> values(const char *name) const
    {
        QVector<double> result;
        for (const irsdk_varHeader &variable : table) {
            if (std::strcmp(variable.name, name) != 0)
                continue;
            for (int i = 0; i < records; ++i)
                result.append(value(variable, i));
        }
        return result;
    }

    bool ok = false; ///< writing succeeded; if false, everything else is empty
    QByteArray bytes;
    irsdk_header header{};
    irsdk_diskSubHeader sub{};
    QVector<irsdk_varHeader> table;
    QByteArray text;
    int records = 0;

private:
    template <typename T>
    static T load(const char *place)
    {
        T value;
        std::memcpy(&value, place, sizeof value);
        return value;
    }

    double value(const irsdk_varHeader &variable, int record) const
    {
        const char *place = bytes.constData() + header.varBuf[0].bufOffset
            + qint64(record) * header.bufLen + variable.offset;
        switch (variable.type) {
        case irsdk_char:
        case irsdk_bool:
            return double(*place);
        case irsdk_float:
            return double(load<float>(place));
        case irsdk_double:
            return load<double>(place);
        default:
            return double(load<qint32>(place));
        }
    }
};
