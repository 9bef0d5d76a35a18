// Lays out a recording as a file.
#include "tools/recording.h"

#include <QBuffer>
#include <QSaveFile>

#include <cstring>

namespace {

// 2024-01-01 12:00 UTC.
constexpr std::int64_t StartDate = 1704110400;

// Fills a field of the file, which may end without a zero.
template <std::size_t Size>
void copyText(char (&field)[Size], const QByteArray &text)
{
    std::memcpy(field, text.constData(), qMin(Size, std::size_t(text.size())));
}

template <typename T>
QByteArray asBytes(const T &value)
{
    return QByteArray(reinterpret_cast<const char *>(&value), sizeof value);
}

bool writeAll(QIODevice *device, const QByteArray &bytes)
{
    return device->write(bytes) == bytes.size();
}

} // namespace

int Recording::recordSize() const
{
    return m_recordSize >= 0 ? m_recordSize : int(m_packedSize);
}

int Recording::offsetOf(const QByteArray &name) const
{
    return m_offsets.at(indexOf(name));
}

int Recording::sectionOffset(Section section) const
{
    qint64 offset = HeaderSize + SubHeaderSize;
    for (const Section each : m_order) {
        offset += m_gaps[each].size();
        if (each == section)
            break;
        offset += sectionSize(each);
    }
    return int(offset);
}

irsdk_header Recording::header() const
{
    irsdk_header header{};
    header.ver = 2;
    header.status = 1;
    header.tickRate = m_tickRate;
    header.sessionInfoLen = m_text.size();
    header.sessionInfoOffset = sectionOffset(Text);
    header.numVars = m_variables.size();
    header.varHeaderOffset = sectionOffset(Table);
    header.numBuf = 1;
    header.bufLen = recordSize();
    header.varBuf[0].bufOffset = sectionOffset(Records);
    for (const auto &change : m_headerChanges)
        change(header);
    return header;
}

irsdk_diskSubHeader Recording::subHeader() const
{
    irsdk_diskSubHeader header{};
    header.sessionStartDate = StartDate;
    header.sessionStartTime = m_startTime;
    header.sessionEndTime = m_endTime;
    header.sessionRecordCount = m_recordCount;
    for (const auto &change : m_subHeaderChanges)
        change(header);
    return header;
}

QVector<irsdk_varHeader> Recording::variableTable() const
{
    QVector<irsdk_varHeader> table(m_variables.size());
    for (int i = 0; i < m_variables.size(); ++i) {
        const RecordingVariable &variable = m_variables.at(i);
        irsdk_varHeader &entry = table[i];
        entry = irsdk_varHeader{};
        entry.type = variable.type;
        entry.offset = m_offsets.at(i);
        entry.count = variable.count;
        entry.countAsTime = variable.countAsTime;
        copyText(entry.name, variable.name);
        copyText(entry.desc, variable.desc);
        copyText(entry.unit, variable.unit);
    }
    for (const auto &change : m_tableChanges)
        change(table);
    return table;
}

QByteArray Recording::bytes() const
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    write(&buffer);
    return buffer.data();
}

bool Recording::write(QIODevice *device) const
{
    QByteArray head = asBytes(header()) + asBytes(subHeader());
    if (!writeAll(device, head))
        return false;
    for (const Section section : m_order) {
        QByteArray content;
        switch (section) {
        case Table:
            for (const irsdk_varHeader &entry : variableTable())
                content.append(asBytes(entry));
            break;
        case Text:
            content = m_text;
            break;
        case Records:
            content = m_records;
            break;
        }
        if (!writeAll(device, m_gaps[section]) || !writeAll(device, content))
            return false;
    }
    return true;
}

bool Recording::write(const QString &fileName) const
{
    QSaveFile file(fileName);
    return file.open(QIODevice::WriteOnly) && write(&file) && file.commit();
}

qint64 Recording::sectionSize(Section section) const
{
    switch (section) {
    case Table:
        return qint64(m_variables.size()) * VariableSize;
    case Text:
        return m_text.size();
    case Records:
        break;
    }
    return m_records.size();
}
