#include "writers/matoutput.h"

#include "model/channel.h"
#include "writers/outputbuffer.h"

#include <QJsonObject>
#include <QMap>

#include <algorithm>
#include <cstring>
#include <limits>
#include <set>

namespace {

/// Every element begins at a multiple of it.
constexpr int Alignment = 8;

/// What a matrix without a name has before the bytes of its elements.
constexpr int LeafHeadSize = 16 + 16 + 8 + 8;

/// In the word of flags that also has the class.
constexpr quint32 LogicalFlag = 0x200;

/// \a size up to where the next element begins.
constexpr qint64 padded(qint64 size)
{
    return (size + Alignment - 1) / Alignment * Alignment;
}

} // namespace

enum class MatOutput::Type : quint32 {
    Int8 = 1,
    UInt8 = 2,
    Int32 = 5,
    UInt32 = 6,
    Double = 9,
    Matrix = 14,
    Utf16 = 17,
};

enum class MatOutput::Class : quint32 {
    Struct = 2,
    Char = 4,
    Double = 6,
    Logical = 9 | LogicalFlag, // of bytes
};

void MatOutput::bytes(const void *bytes, qint64 size)
{
    m_size += size;
    if (m_buffer && size > 0) {
        char *place = m_buffer->room(std::size_t(size));
        std::memcpy(place, bytes, std::size_t(size));
        m_buffer->appendUntil(place + size);
    }
}

void MatOutput::tag(Type type, qint64 size)
{
    const quint32 words[]{static_cast<quint32>(type), static_cast<quint32>(size)};
    bytes(words, sizeof words);
}

void MatOutput::data(Type type, const void *bytes, qint64 size)
{
    constexpr char padding[Alignment]{};
    tag(type, size);
    this->bytes(bytes, size);
    this->bytes(padding, padded(size) - size);
}

void MatOutput::element(Type type, const Contents &contents)
{
    MatOutput counted;
    contents(counted);
    tag(type, counted.m_size);
    if (m_buffer)
        contents(*this);
    else
        m_size += counted.m_size;
}

void MatOutput::matrixHead(Class matrixClass, int rows, int columns, const QByteArray &name)
{
    const quint32 flags[]{static_cast<quint32>(matrixClass), 0};
    data(Type::UInt32, flags, sizeof flags);
    const qint32 dimensions[]{rows, columns};
    data(Type::Int32, dimensions, sizeof dimensions);
    data(Type::Int8, name.constData(), name.size());
}

/// A matrix whose size needs no counting; most are.
void MatOutput::leaf(Class matrixClass, int rows, int columns, Type type, int elementSize,
                     const void *elements)
{
    const qint64 size = qint64(rows) * columns * elementSize;
    tag(Type::Matrix, LeafHeadSize + padded(size));
    if (!m_buffer) {
        m_size += LeafHeadSize + padded(size);
        return;
    }
    matrixHead(matrixClass, rows, columns);
    data(type, elements, size);
}

void MatOutput::fileHeader()
{
    constexpr int textSize = 124; // with eight bytes that say where further data is: nowhere
    QByteArray text("MATLAB 5.0 MAT-file");
    text.append(QByteArray(textSize - text.size(), ' '));
    bytes(text.constData(), text.size());
    constexpr quint16 version = 0x0100;
    constexpr quint16 byteOrder = ('M' << 8) | 'I'; // reads "IM" in this order
    const quint16 words[]{version, byteOrder};
    bytes(words, sizeof words);
}

void MatOutput::structsHead(const QStringList &fields, int count, const QByteArray &name)
{
    int longest = 0;
    for (const QString &field : fields)
        longest = std::max(longest, field.size());
    const int size = longest + 1; // each ends with a zero
    QByteArray names(fields.size() * size, '\0');
    for (int i = 0; i < fields.size(); ++i)
        names.replace(i * size, fields.at(i).size(), fields.at(i).toLatin1());
    matrixHead(Class::Struct, 1, count, name);
    // The size of a number this small shares a word with its type.
    const quint32 words[]{static_cast<quint32>(Type::Int32) | sizeof(qint32) << 16,
                          static_cast<quint32>(size)};
    bytes(words, sizeof words);
    data(Type::Int8, names.constData(), names.size());
}

void MatOutput::structs(const QStringList &fields, int count, const Contents &values)
{
    element(Type::Matrix, [&](MatOutput &out) {
        out.structsHead(fields, count);
        values(out);
    });
}

void MatOutput::variable(const QByteArray &name, const QStringList &fields, int count,
                         const Contents &values, qint64 valuesSize)
{
    MatOutput head;
    head.structsHead(fields, count, name);
    tag(Type::Matrix, head.m_size + valuesSize);
    structsHead(fields, count, name);
    values(*this);
}

void MatOutput::text(const QString &text)
{
    leaf(Class::Char, text.isEmpty() ? 0 : 1, text.size(), Type::Utf16, sizeof(ushort),
         text.utf16());
}

void MatOutput::value(const QJsonValue &json)
{
    switch (json.type()) {
    case QJsonValue::String:
        text(json.toString());
        return;
    case QJsonValue::Double: {
        const double number = json.toDouble();
        leaf(Class::Double, 1, 1, Type::Double, sizeof number, &number);
        return;
    }
    case QJsonValue::Bool: {
        const char byte = json.toBool() ? 1 : 0;
        leaf(Class::Logical, 1, 1, Type::UInt8, sizeof byte, &byte);
        return;
    }
    case QJsonValue::Object: {
        const QJsonObject object = json.toObject();
        structs(matFieldNames(object.keys()), 1, [&object](MatOutput &out) {
            for (auto member = object.begin(); member != object.end(); ++member)
                out.value(member.value());
        });
        return;
    }
    default:
        leaf(Class::Double, 0, 0, Type::Double, sizeof(double), nullptr);
    }
}

void MatOutput::column(const QVector<double> &samples)
{
    tag(Type::Matrix, LeafHeadSize + qint64(samples.size()) * qint64(sizeof(double)));
    matrixHead(Class::Double, samples.size(), 1);
    this->samples(samples);
}

void MatOutput::samples(const QVector<double> &samples)
{
    constexpr int atOnce = 1 << 13;
    tag(Type::Double, qint64(samples.size()) * qint64(sizeof(double)));
    m_size += qint64(samples.size()) * qint64(sizeof(double));
    if (!m_buffer)
        return;
    for (int first = 0; first < samples.size(); first += atOnce) {
        const int count = std::min(atOnce, samples.size() - first);
        char *place = m_buffer->room(std::size_t(count) * sizeof(double));
        for (int i = 0; i < count; ++i) {
            const double sample = samples.at(first + i);
            const double written = ZEP::Channel::isValidSample(sample)
                ? sample
                : std::numeric_limits<double>::quiet_NaN();
            std::memcpy(place, &written, sizeof written);
            place += sizeof written;
        }
        m_buffer->appendUntil(place);
    }
}

QStringList matFieldNames(const QStringList &names)
{
    constexpr int longest = 63;
    constexpr int longestSuffix = 7; // of a million names, and they still get fields of their own
    const auto isLetter = [](QChar c) {
        return (c >= QLatin1Char('A') && c <= QLatin1Char('Z'))
            || (c >= QLatin1Char('a') && c <= QLatin1Char('z'));
    };
    QStringList fields;
    // No hashes, since a file may choose the names.
    std::set<QString> taken;
    QMap<QString, int> nextNumbers; // by what is left of a name before any suffix
    for (QString name : names) {
        for (QChar &c : name) {
            if (!isLetter(c) && !(c >= QLatin1Char('0') && c <= QLatin1Char('9')))
                c = QLatin1Char('_');
        }
        if (name.isEmpty() || !isLetter(name.front()))
            name.prepend(QLatin1Char('x'));
        QString field = name.left(longest);
        int &number = nextNumbers[name.left(longest - longestSuffix)];
        for (number = std::max(number, 2); taken.count(field) > 0; ++number) {
            const QString suffix = QStringLiteral("_%1").arg(number);
            field = name.left(longest - suffix.size()) + suffix;
        }
        taken.insert(field);
        fields.append(field);
    }
    return fields;
}
