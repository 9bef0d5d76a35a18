#pragma once

#include <QByteArray>
#include <QJsonValue>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

class OutputBuffer;

/// Writes what a MATLAB 5 file consists of. Every element begins with the size of all that is in
/// it, so contents are given as functions, which are called once to count and once to write.
///
/// The file is written as it is described: nothing of it is kept, however much it is.
class MatOutput
{
public:
    using Contents = std::function<void(MatOutput &)>;

    /// Only counts.
    MatOutput() = default;
    /// \a buffer must outlive this.
    explicit MatOutput(OutputBuffer &buffer) : m_buffer(&buffer) { }

    /// Bytes so far.
    qint64 size() const { return m_size; }

    /// What every file begins with.
    void fileHeader();
    /// A row of \a count structs with \a fields, as matFieldNames() makes them. \a values writes
    /// the fields of the first struct, then those of the next.
    void structs(const QStringList &fields, int count, const Contents &values);
    /// The same for a variable of the file, with its \a name, and the size of what \a values
    /// writes.
    void variable(const QByteArray &name, const QStringList &fields, int count,
                  const Contents &values, qint64 valuesSize);
    /// The same as \a json: a text, a number, a logical, a struct, or an empty matrix for null.
    void value(const QJsonValue &json);
    /// A column vector, with NaN where a sample is missing: the only sign for it that others know.
    void column(const QVector<double> &samples);

private:
    enum class Type : quint32;
    enum class Class : quint32;

    void bytes(const void *bytes, qint64 size);
    void tag(Type type, qint64 size);
    void data(Type type, const void *bytes, qint64 size);
    void element(Type type, const Contents &contents);
    void matrixHead(Class matrixClass, int rows, int columns, const QByteArray &name = {});
    void structsHead(const QStringList &fields, int count, const QByteArray &name = {});
    void leaf(Class matrixClass, int rows, int columns, Type type, int elementSize,
              const void *elements);
    void text(const QString &text);
    void samples(const QVector<double> &samples);

    OutputBuffer *m_buffer = nullptr; ///< null while this only counts
    qint64 m_size = 0;
};

/// Names of fields for \a names, each different: letters, digits and underscores, a letter first,
/// 63 characters at most. A name that is all that stays as it is.
QStringList matFieldNames(const QStringList &names);
