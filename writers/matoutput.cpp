#include "writers/matoutput.h"

#include "model/channel.h"
#include "writers/outputbuffer.h"

#include <QJsonObject>
#include <QMap>
#include <QRegularExpression>

#include <algorithm>
#include <cstring>
#include <limits>
#include <set>

namespace {

/// Every element begins at a multiple of it.
constexpr int Alignment = 8;

/// In the word of flags that also has the class.
constexpr quint32 LogicalFlag = 0x200;

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

void MatOutput::bytes(const void *bytes, int size)
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

void MatOutput::data(Type type, const void *bytes, int size)
{
    constexpr char padding[Alignment]{};
    tag(type, size);
    this->bytes(bytes, size);
    this->bytes(padding, (Alignment - size % Alignment) % Alignment);
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

void MatOutput::matrix(Class matrixClass, int rows, int columns, const Contents &contents,
                       const QByteArray &name)
{
    element(Type::Matrix, [&](MatOutput &out) {
        const quint32 flags[]{static_cast<quint32>(matrixClass), 0};
        out.data(Type::UInt32, flags, sizeof flags);
        const qint32 dimensions[]{rows, columns};
        out.data(Type::Int32, dimensions, sizeof dimensions);
        out.data(Type::Int8, name.constData(), name.size());
        contents(out);
    });
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

void MatOutput::structs(const QStringList &fields, int count, const Contents &values,
                        const QByteArray &name)
{
    QByteArray names;
    int longest = 0;
    for (const QString &field : fields)
        longest = std::max(longest, field.size());
    const int size = longest + 1; // each ends with a zero
    for (const QString &field : fields)
        names += field.toLatin1().leftJustified(size, '\0');
    matrix(
        Class::Struct, 1, count,
        [&](MatOutput &out) {
            // The size in front of a number this small shares a word with its type.
            const quint32 words[]{static_cast<quint32>(Type::Int32) | sizeof(qint32) << 16,
                                  static_cast<quint32>(size)};
            out.bytes(words, sizeof words);
            out.data(Type::Int8, names.constData(), names.size());
            values(out);
        },
        name);
}

void MatOutput::text(const QString &text)
{
    matrix(Class::Char, text.isEmpty() ? 0 : 1, text.size(), [&](MatOutput &out) {
        out.data(Type::Utf16, text.utf16(), text.size() * int(sizeof(ushort)));
    });
}

void MatOutput::value(const QJsonValue &json)
{
    switch (json.type()) {
    case QJsonValue::String:
        text(json.toString());
        return;
    case QJsonValue::Double:
        matrix(Class::Double, 1, 1, [number = json.toDouble()](MatOutput &out) {
            out.data(Type::Double, &number, sizeof number);
        });
        return;
    case QJsonValue::Bool:
        matrix(Class::Logical, 1, 1, [byte = char(json.toBool())](MatOutput &out) {
            out.data(Type::UInt8, &byte, sizeof byte);
        });
        return;
    case QJsonValue::Object: {
        const QJsonObject object = json.toObject();
        structs(matFieldNames(object.keys()), 1, [&object](MatOutput &out) {
            for (auto member = object.begin(); member != object.end(); ++member)
                out.value(member.value());
        });
        return;
    }
    default:
        matrix(Class::Double, 0, 0, [](MatOutput &out) { out.data(Type::Double, nullptr, 0); });
    }
}

void MatOutput::column(const QVector<double> &samples)
{
    matrix(Class::Double, samples.size(), 1, [&](MatOutput &out) { out.samples(samples); });
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
    static const QRegularExpression odd(QStringLiteral("[^A-Za-z0-9_]"));
    static const QRegularExpression letter(QStringLiteral("\\A[A-Za-z]"));
    QStringList fields;
    // No hashes, since a file may choose the names.
    std::set<QString> taken;
    QMap<QString, int> nextNumbers; // by what is left of a name before any suffix
    for (QString name : names) {
        name.replace(odd, QStringLiteral("_"));
        if (!letter.match(name).hasMatch())
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
