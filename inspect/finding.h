#pragma once

#include "inspect/findingkind.h"

#include <QString>

#include <optional>

/// One thing about a recording that its owner should know, and where it is.
///
/// Texts contain names and values as the file spells them: whoever prints them makes them
/// printable.
struct Finding {
    enum class Severity {
        Remark, ///< every sample of the file is imported nevertheless
        Damage, ///< something of the file does not reach the laps
    };

    FindingKind kind;
    QString text; ///< one sentence, without the place
    Severity severity = Severity::Remark;
    QString lost{}; ///< by its name, as a verdict lists it, or everything(); empty for a remark

    std::optional<qint64> offset{}; ///< in the file, in bytes
    std::optional<qint64> wanted{}; ///< bytes that should be there
    std::optional<qint64> had{}; ///< bytes that are there
    QString variable{}; ///< name of the variable it is about
    int line = 0; ///< of the session info, from 1; 0 if it is about no line
    QString quote{}; ///< the line, escaped and shortened
    /// It is damage only if laps contain the records that it is about, or would without it.
    bool isAboutRecords = false;
    /// How many more findings of its kind this one stands for; it has no place then.
    int others = 0;

    /// A remark without a place. The functions below add what else is known, in one expression.
    Finding(FindingKind itsKind, const QString &sentence) : kind(itsKind), text(sentence) { }

    Finding &at(qint64 fileOffset);
    /// \a bytes should be there, but only \a there of them are.
    Finding &needs(qint64 bytes, qint64 there);
    Finding &about(const QString &variableName);
    /// \a quoted may be empty.
    Finding &inLine(int number, const QString &quoted);
    /// Makes it damage by which \a what is lost.
    Finding &loses(const QString &what);

    /// Says that only records are lost by it, which may not matter to any lap.
    Finding &inRecords();

    /// What is lost of a file from which nothing is imported.
    static QString everything() { return QStringLiteral("everything"); }

    bool isDamage() const { return severity == Severity::Damage; }
    /// "session info, line 21", "variable Speed", "byte 112"; empty if it has none.
    QString place() const;
};
