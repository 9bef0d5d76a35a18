#include "tests/inspect/damage.h"

#include "tools/random.h"

#include <QList>

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace {

constexpr int Sector = 512; // bytes that a disk writes at once

using Lines = QList<QByteArray>;

class Dice
{
public:
    explicit Dice(std::uint32_t seed) : m_random(seed) { }

    /// From 0 to \a count - 1.
    int below(int count) { return int(m_random.uniform() * count); }
    char byte() { return char(below(256)); }
    QByteArray bytes(int count)
    {
        QByteArray result(count, '\0');
        std::generate(result.begin(), result.end(), [this] { return byte(); });
        return result;
    }

private:
    Random m_random;
};

template <typename Edit>
QByteArray withText(const RecordingParts &sound, std::uint32_t seed, const Edit &edit)
{
    RecordingParts parts = sound;
    Dice dice(seed);
    edit(&parts.text, &dice);
    return parts.bytes();
}

/// Edits one of the lines of the text, neither the first nor the last.
template <typename Edit>
QByteArray withLine(const RecordingParts &sound, std::uint32_t seed, const Edit &edit)
{
    return withText(sound, seed, [&](QByteArray *text, Dice *dice) {
        Lines lines = text->split('\n');
        edit(&lines, 1 + dice->below(lines.size() - 3), dice);
        *text = lines.join('\n');
    });
}

template <typename Edit>
QByteArray withTable(const RecordingParts &sound, std::uint32_t seed, const Edit &edit)
{
    RecordingParts parts = sound;
    Dice dice(seed);
    const int size = int(sizeof(irsdk_varHeader));
    edit(&parts.table, size * dice.below(parts.table.size() / size), &dice);
    return parts.bytes();
}

/// Edits the records at one of them, neither the first nor the last.
template <typename Edit>
QByteArray withRecord(const RecordingParts &sound, std::uint32_t seed, const Edit &edit)
{
    RecordingParts parts = sound;
    Dice dice(seed);
    const int size = parts.header.bufLen;
    edit(&parts.records, size * (1 + dice.below(parts.records.size() / size - 3)), size, &dice);
    return parts.bytes();
}

/// Where a sector of the file begins in the records, not in the first or last one.
int sectorIn(const RecordingParts &parts, Dice *dice)
{
    const int begin = parts.header.varBuf[0].bufOffset;
    const int first = (begin + parts.header.bufLen) / Sector + 1;
    const int last = (begin + parts.records.size() - parts.header.bufLen) / Sector - 1;
    return (first + dice->below(last - first)) * Sector - begin;
}

template <typename Edit>
QByteArray withSector(const RecordingParts &sound, std::uint32_t seed, const Edit &edit)
{
    RecordingParts parts = sound;
    Dice dice(seed);
    edit(&parts, sectorIn(parts, &dice), &dice);
    return parts.bytes();
}

template <int Bytes>
QByteArray withInserted(const RecordingParts &sound, std::uint32_t seed)
{
    return withRecord(sound, seed, [](QByteArray *records, int at, int size, Dice *dice) {
        records->insert(at + dice->below(size), dice->bytes(Bytes));
    });
}

template <int Bytes>
QByteArray withoutBytes(const RecordingParts &sound, std::uint32_t seed)
{
    return withRecord(sound, seed, [](QByteArray *records, int at, int size, Dice *dice) {
        records->remove(at + dice->below(size), Bytes);
    });
}

int offsetOf(const RecordingParts &parts, const char *name)
{
    for (int i = 0; i < parts.header.numVars; ++i) {
        irsdk_varHeader variable;
        std::memcpy(&variable, parts.table.constData() + i * int(sizeof variable), sizeof variable);
        if (std::strncmp(variable.name, name, sizeof variable.name) == 0)
            return variable.offset;
    }
    qFatal("there is no %s", name);
}

QVector<DamageKind> textKinds()
{
    const char *part = "session info";
    return {
        {part, "a byte replaced",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withText(sound, seed, [](QByteArray *text, Dice *dice) {
                 (*text)[dice->below(text->size())] = dice->byte();
             });
         }},
        {part, "a byte lost",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withText(sound, seed, [](QByteArray *text, Dice *dice) {
                 text->remove(dice->below(text->size()), 1);
             });
         }},
        {part, "a byte inserted",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withText(sound, seed, [](QByteArray *text, Dice *dice) {
                 text->insert(dice->below(text->size()), dice->byte());
             });
         }},
        {part, "a line lost",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withLine(sound, seed,
                             [](Lines *lines, int line, Dice *) { lines->removeAt(line); });
         }},
        {part, "a line twice",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withLine(sound, seed, [](Lines *lines, int line, Dice *) {
                 lines->insert(line, lines->at(line));
             });
         }},
        {part, "two lines swapped",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withLine(sound, seed, [](Lines *lines, int line, Dice *) {
                 lines->swapItemsAt(line, line + 1);
             });
         }},
        {part, "a line indented further",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withLine(sound, seed, [](Lines *lines, int line, Dice *dice) {
                 (*lines)[line].prepend(QByteArray(1 + dice->below(3), ' '));
             });
         }},
        {part, "a line indented less",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withLine(sound, seed, [](Lines *lines, int line, Dice *dice) {
                 for (int i = 0, count = 1 + dice->below(3);
                      i < count && lines->at(line).startsWith(' '); ++i)
                     (*lines)[line].remove(0, 1);
             });
         }},
        {part, "a line broken",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withLine(sound, seed, [](Lines *lines, int line, Dice *dice) {
                 (*lines)[line].insert(dice->below(lines->at(line).size() + 1), '\n');
             });
         }},
        {part, "two lines joined",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withLine(sound, seed, [](Lines *lines, int line, Dice *) {
                 (*lines)[line] += lines->takeAt(line + 1);
             });
         }},
        {part, "\": \" in a value",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withLine(sound, seed,
                             [](Lines *lines, int line, Dice *) { (*lines)[line] += ": x"; });
         }},
        {part, "zeros",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withText(sound, seed, [](QByteArray *text, Dice *dice) {
                 text->replace(dice->below(text->size() - Sector), Sector, QByteArray(Sector, 0));
             });
         }},
        {part, "random bytes",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withText(sound, seed, [](QByteArray *text, Dice *dice) {
                 const int count = 2 + dice->below(40);
                 text->replace(dice->below(text->size() - count), count, dice->bytes(count));
             });
         }},
    };
}

QVector<DamageKind> tableKinds()
{
    const char *part = "variables";
    return {
        {part, "a type, place or count replaced",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withTable(sound, seed, [](QByteArray *table, int at, Dice *dice) {
                 (*table)[at + dice->below(12)] = dice->byte();
             });
         }},
        {part, "a byte of a name replaced",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withTable(sound, seed, [](QByteArray *table, int at, Dice *dice) {
                 const int name = at + int(offsetof(irsdk_varHeader, name));
                 const int length = int(std::strlen(table->constData() + name));
                 (*table)[name + dice->below(length)] = dice->byte();
             });
         }},
        {part, "an entry that is zero",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withTable(sound, seed, [](QByteArray *table, int at, Dice *) {
                 const int size = int(sizeof(irsdk_varHeader));
                 table->replace(at, size, QByteArray(size, 0));
             });
         }},
        {part, "an entry twice",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withTable(sound, seed, [](QByteArray *table, int at, Dice *) {
                 const int size = int(sizeof(irsdk_varHeader));
                 const int to = (at + size) % table->size();
                 table->replace(to, size, table->mid(at, size));
             });
         }},
        {part, "random bytes",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withTable(sound, seed, [](QByteArray *table, int at, Dice *dice) {
                 const int size = int(sizeof(irsdk_varHeader));
                 table->replace(at, size, dice->bytes(size));
             });
         }},
    };
}

QVector<DamageKind> recordKinds()
{
    const char *part = "records";
    return {
        {part, "1 byte inserted", withInserted<1>},
        {part, "4 bytes inserted", withInserted<4>},
        {part, "512 bytes inserted", withInserted<Sector>},
        {part, "1 byte lost", withoutBytes<1>},
        {part, "512 bytes lost", withoutBytes<Sector>},
        {part, "a record of random bytes",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withRecord(sound, seed, [](QByteArray *records, int at, int size, Dice *dice) {
                 records->replace(at, size, dice->bytes(size));
             });
         }},
        {part, "a record that is zero",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withRecord(sound, seed, [](QByteArray *records, int at, int size, Dice *) {
                 records->replace(at, size, QByteArray(size, 0));
             });
         }},
        {part, "a record lost",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withRecord(sound, seed, [](QByteArray *records, int at, int size, Dice *) {
                 records->remove(at, size);
             });
         }},
        {part, "a record twice",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withRecord(sound, seed, [](QByteArray *records, int at, int size, Dice *) {
                 records->insert(at, records->mid(at, size));
             });
         }},
        {part, "two records swapped",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withRecord(sound, seed, [](QByteArray *records, int at, int size, Dice *dice) {
                 const int other = size * (1 + dice->below(records->size() / size - 2));
                 const QByteArray one = records->mid(at, size);
                 records->replace(at, size, records->mid(other, size));
                 records->replace(other, size, one);
             });
         }},
        {part, "another session number",
         [](const RecordingParts &sound, std::uint32_t seed) {
             const int offset = offsetOf(sound, "SessionNum");
             return withRecord(sound, seed, [&](QByteArray *records, int at, int, Dice *dice) {
                 (*records)[at + offset] = char(1 + dice->below(100));
             });
         }},
        {part, "a sector of zeros",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withSector(sound, seed, [](RecordingParts *parts, int at, Dice *) {
                 parts->records.replace(at, Sector, QByteArray(Sector, 0));
             });
         }},
        {part, "a sector of random bytes",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withSector(sound, seed, [](RecordingParts *parts, int at, Dice *dice) {
                 parts->records.replace(at, Sector, dice->bytes(Sector));
             });
         }},
        {part, "two sectors swapped",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withSector(sound, seed, [](RecordingParts *parts, int at, Dice *dice) {
                 const int other = sectorIn(*parts, dice);
                 const QByteArray one = parts->records.mid(at, Sector);
                 parts->records.replace(at, Sector, parts->records.mid(other, Sector));
                 parts->records.replace(other, Sector, one);
             });
         }},
        {part, "cut off",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withRecord(sound, seed, [](QByteArray *records, int at, int size, Dice *dice) {
                 records->truncate(at + dice->below(size));
             });
         }},
        {part, "zeros to the end",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withRecord(sound, seed, [](QByteArray *records, int at, int, Dice *) {
                 const int rest = records->size() - at;
                 records->replace(at, rest, QByteArray(rest, 0));
             });
         }},
        {part, "bytes after the last record",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withRecord(sound, seed, [](QByteArray *records, int, int size, Dice *dice) {
                 *records += dice->bytes(1 + dice->below(size - 1));
             });
         }},
        {part, "a bit of a record",
         [](const RecordingParts &sound, std::uint32_t seed) {
             return withRecord(sound, seed, [](QByteArray *records, int at, int size, Dice *dice) {
                 const int byte = at + dice->below(size);
                 (*records)[byte] = char(records->at(byte) ^ (1 << dice->below(8)));
             });
         }},
    };
}

QVector<DamageKind> headerKinds()
{
    return {{"headers", "a byte replaced", [](const RecordingParts &sound, std::uint32_t seed) {
                 QByteArray bytes = sound.bytes();
                 Dice dice(seed);
                 bytes[dice.below(int(sizeof(irsdk_header) + sizeof(irsdk_diskSubHeader)))] =
                     dice.byte();
                 return bytes;
             }}};
}

} // namespace

RecordingParts::RecordingParts(const QByteArray &bytes)
{
    std::memcpy(&header, bytes.constData(), sizeof header);
    std::memcpy(&subHeader, bytes.constData() + sizeof header, sizeof subHeader);
    table = bytes.mid(header.varHeaderOffset, header.numVars * int(sizeof(irsdk_varHeader)));
    text = bytes.mid(header.sessionInfoOffset, header.sessionInfoLen);
    records = bytes.mid(header.varBuf[0].bufOffset);
}

QByteArray RecordingParts::bytes() const
{
    irsdk_header placed = header;
    placed.varHeaderOffset = int(sizeof header + sizeof subHeader);
    placed.sessionInfoOffset = placed.varHeaderOffset + table.size();
    placed.sessionInfoLen = text.size();
    placed.varBuf[0].bufOffset = placed.sessionInfoOffset + text.size();
    return QByteArray(reinterpret_cast<const char *>(&placed), sizeof placed)
        + QByteArray(reinterpret_cast<const char *>(&subHeader), sizeof subHeader) + table + text
        + records;
}

const QVector<DamageKind> &damageKinds()
{
    static const QVector<DamageKind> kinds =
        headerKinds() + textKinds() + tableKinds() + recordKinds();
    return kinds;
}
