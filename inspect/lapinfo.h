#pragma once

#include "ibt/lapinfokeys.h"
#include "inspect/infoline.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

class FindingList;
class InfoIndentation;
class TYamlTree;

/// The values of a session info that laps carry: which lines have them, and whether the tree that
/// laps take them from has them as they were written.
class LapInfo
{
public:
    /// Values of the driver of car \a carIdx, and of \a sessions, those that are driven.
    LapInfo(const TYamlTree &tree, int carIdx, const QVector<int> &sessions);

    /// The key of the value that laps carry and that \a line, which belongs to \a levels, has;
    /// empty if laps do not carry it.
    QString keyOf(const InfoIndentation &levels, const InfoLine &line) const;

    /// Remembers \a line, which belongs to \a levels, if it has a value that laps carry, or one
    /// with the name of such a value.
    void read(const InfoIndentation &levels, const InfoLine &line, const InfoPlace &place);
    /// \a place is a line that no simulator writes.
    void readGarbled(const InfoPlace &place);

    /// The keys of values that the tree does not have.
    const QStringList &missing() const { return m_missing; }
    /// Adds a finding for values of \a missing of which the text shows that they were written.
    /// \a misspelled has a line for each that comes close to the name of one.
    void reportMissing(const QStringList &missing, const QMap<QString, InfoPlace> &misspelled,
                       FindingList *findings) const;
    /// Adds a finding for each value, without \a known, that cannot be what was written.
    void reportOdd(const QStringList &known, FindingList *findings) const;

private:
    struct Value {
        QString node; ///< path of the node that has it
        QString path; ///< from there
        LapInfoKind kind;
        InfoPlace place{}; ///< of its line

        QString key() const { return path.section(QLatin1Char('/'), -1); }
    };

    QString valueOf(const Value &value) const;
    bool isUsual(const Value &value) const;

    const TYamlTree &m_tree;
    QVector<Value> m_values;
    QStringList m_missing;
    QMap<QString, int> m_indexes; ///< of values, by their whole path
    QMap<QString, InfoPlace> m_lines; ///< the first line with a name, by the name
    QString m_section; ///< the last one that was read
    InfoPlace m_garbled; ///< the first line of that kind
};

/// Whether \a name becomes \a other if one character is changed, added or left out.
bool isMisspelled(const QString &name, const QString &other);
