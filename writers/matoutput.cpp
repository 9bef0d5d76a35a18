#include "writers/matvariable.h"

#include <QJsonObject>
#include <QMap>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <new>
#include <set>
#include <vector>

namespace {

using Dimensions = std::array<std::size_t, 2>;

/// \a variable; libmatio returns null if there is not enough memory.
MatVariable owned(matvar_t *variable)
{
    if (!variable)
        throw std::bad_alloc();
    return MatVariable(variable);
}

MatVariable text(const QString &text)
{
    Dimensions size{text.isEmpty() ? 0U : 1U, std::size_t(text.size())};
    return owned(Mat_VarCreate(nullptr, MAT_C_CHAR, MAT_T_UTF16, 2, size.data(),
                               const_cast<ushort *>(text.utf16()), 0));
}

MatVariable number(double number)
{
    Dimensions size{1, 1};
    return owned(Mat_VarCreate(nullptr, MAT_C_DOUBLE, MAT_T_DOUBLE, 2, size.data(), &number, 0));
}

MatVariable logical(bool value)
{
    Dimensions size{1, 1};
    mat_uint8_t byte = value ? 1 : 0;
    return owned(
        Mat_VarCreate(nullptr, MAT_C_UINT8, MAT_T_UINT8, 2, size.data(), &byte, MAT_F_LOGICAL));
}

MatVariable object(const QJsonObject &object)
{
    const QStringList keys = object.keys();
    MatVariable result = matStruct(matFieldNames(keys));
    for (int i = 0; i < keys.size(); ++i)
        setMatField(result, 0, i, matValue(object.value(keys.at(i))));
    return result;
}

} // namespace

MatVariable matStruct(const QStringList &fields, std::size_t size, const char *name)
{
    QVector<QByteArray> names;
    for (const QString &field : fields)
        names.append(field.toLatin1());
    std::vector<const char *> pointers;
    for (const QByteArray &bytes : qAsConst(names))
        pointers.push_back(bytes.constData());
    pointers.push_back(nullptr);
    const Dimensions dimensions{1, size};
    return owned(Mat_VarCreateStruct2(name, 2, dimensions.data(), pointers.data()));
}

void setMatField(const MatVariable &structs, std::size_t index, int fieldIndex, MatVariable value)
{
    Mat_VarSetStructFieldByIndex(structs.get(), std::size_t(fieldIndex), index, value.release());
}

MatVariable matValue(const QJsonValue &json)
{
    switch (json.type()) {
    case QJsonValue::String:
        return text(json.toString());
    case QJsonValue::Double:
        return number(json.toDouble());
    case QJsonValue::Bool:
        return logical(json.toBool());
    case QJsonValue::Object:
        return object(json.toObject());
    default:
        break;
    }
    Dimensions size{0, 0};
    return owned(Mat_VarCreate(nullptr, MAT_C_DOUBLE, MAT_T_DOUBLE, 2, size.data(), nullptr, 0));
}

MatVariable matColumn(QVector<double> &samples)
{
    Dimensions size{std::size_t(samples.size()), 1};
    return owned(Mat_VarCreate(nullptr, MAT_C_DOUBLE, MAT_T_DOUBLE, 2, size.data(), samples.data(),
                               MAT_F_DONT_COPY_DATA));
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
