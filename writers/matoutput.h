#pragma once

#include <QJsonValue>
#include <QString>
#include <QStringList>
#include <QVector>

#include <matio.h>

#include <memory>

struct MatVariableDeleter {
    void operator()(matvar_t *variable) const { Mat_VarFree(variable); }
};
/// A variable of a MAT file, or a part of one.
using MatVariable = std::unique_ptr<matvar_t, MatVariableDeleter>;

/// A row of \a size structs with \a fields, as matFieldNames() makes them; \a name is for variables
/// of the file alone.
MatVariable matStruct(const QStringList &fields, std::size_t size = 1, const char *name = nullptr);
/// Sets the field at \a fieldIndex of the struct at \a index, once.
void setMatField(const MatVariable &structs, std::size_t index, int fieldIndex, MatVariable value);

/// The same as \a json: a text, a number, a logical, a struct, or an empty matrix for null.
MatVariable matValue(const QJsonValue &json);
/// A column vector that refers to \a samples, which must outlive it.
MatVariable matColumn(QVector<double> &samples);

/// Names of fields for \a names, each different: letters, digits and underscores, a letter first,
/// 63 characters at most. A name that is all that stays as it is.
QStringList matFieldNames(const QStringList &names);
