#pragma once

#include <QString>

#include <optional>

/// What files an export writes, and in which format.
class ExportNames
{
public:
    enum class Format { Csv, Json, Mat };

    /// \a output is a file, a folder that exists, "-" for standard output, or empty for the current
    /// folder; \a format is "csv", "json" or "mat", or empty: then the suffix of a file decides,
    /// and otherwise it is CSV. With \a split there is a file for each lap. Without a result \a
    /// problem says what does not fit.
    static std::optional<ExportNames> from(const QString &output, const QString &format, bool split,
                                           QString *problem);

    Format format() const { return m_format; }
    bool isSplit() const { return m_split; }
    bool isStandardOutput() const { return m_output == QLatin1String("-"); }
    /// Whether all recordings would go to the same place.
    bool isOneFile() const { return !m_output.isEmpty() && !m_isFolder; }

    /// The same for recordings in \a subfolder of the folder that they were found in: what they
    /// become is in a folder of that name. Unchanged if it is empty, or the output is a file.
    ExportNames in(const QString &subfolder) const;
    /// As from() takes it. It ends with a slash after in(), if that has changed it.
    const QString &output() const { return m_output; }

    /// Where laps of \a recording go: "monday.csv" for "monday.ibt", unless the output is a file.
    QString fileName(const QString &recording) const;
    /// The same for one lap with a file of its own: "monday-lap03.csv".
    QString fileName(const QString &recording, int lap) const;

private:
    QString m_output;
    Format m_format = Format::Csv;
    bool m_split = false;
    bool m_isFolder = false;
};
