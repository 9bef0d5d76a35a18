#pragma once

#include <QString>

#include <optional>

/// One thing about a recording that its owner should know, and where it is.
struct Finding {
    enum class Severity {
        Remark, ///< every sample of the file is imported all the same
        Damage, ///< something of the file does not reach the laps
    };

    Severity severity = Severity::Remark;
    QString kind; ///< what sort of thing it is, for scripts: "record-count"
    QString text; ///< one sentence, without the place
    QString lost; ///< by its name, as a verdict lists it, or everything(); empty for a remark

    std::optional<qint64> offset{}; ///< of the file, in bytes
    std::optional<qint64> wanted{}; ///< bytes that should be there
    std::optional<qint64> had{}; ///< bytes that are there
    QString variable{}; ///< name of the variable it is about
    int line = 0; ///< of the session info, from 1; 0 if it is about no line
    QString quote{}; ///< the line, escaped and shortened
    /// How many more findings of its kind this one stands for; it has no place then.
    int others = 0;

    /// What is lost of a file from which nothing is imported.
    static QString everything() { return QStringLiteral("everything"); }

    /// "session info, line 21", "variable Speed", "byte 112"; empty if it has none.
    QString place() const;
};
