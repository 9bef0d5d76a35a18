#pragma once

#include "inspect/findingkind.h"
#include "inspect/infoline.h"

#include <QStringList>

#include <optional>
#include <vector>

class FindingList;
class FollowedDriver;

/// A line of a session info that is to blame if something is lost, and why.
struct InfoBlame {
    InfoPlace place;
    FindingKind kind;
    QString reason; ///< a sentence whose subject is the line
    /// The column of a line whose indentation does no harm before it ends; -1 for another line.
    int lastingColumn = -1;
    bool leadsToDriver = false; ///< without what the line means, nobody is in the player's car

    /// Blames the line at \a place for what is unusual about its writing; if nothing is, for being
    /// lost itself.
    static InfoBlame oddity(InfoLine::Oddity oddity, const InfoPlace &place);
};

/// What is lost of a session info: entries in a row, and the first odd line before them. Nobody
/// notices that a line changed the levels before an entry is lost by it.
class InfoLosses
{
public:
    InfoLosses(const FollowedDriver &driver, FindingList *findings);

    /// \a odd does no harm yet.
    void suspect(const InfoBlame &odd);
    bool hasSuspects() const { return !m_suspects.empty(); }
    /// An entry indented by \a column spaces is where it belongs, so nothing before it did harm.
    void find(int column);

    /// From now on, \a line is to blame.
    void blame(const InfoBlame &line);
    /// Whether a line is being blamed.
    bool isOpen() const { return m_loss.has_value(); }
    /// The entry \a name in \a line is lost. If no line is being blamed, a suspect is.
    void lose(const InfoPlace &line, const QString &name);
    /// The blamed line is lost itself.
    void loseItself() { m_loss->isItself = true; }
    /// Something is lost without which nobody is in the player's car.
    void loseDriver() { m_loss->isDriver = true; }
    /// The value called \a key is lost, which laps carry.
    void loseLapValue(const QString &key);
    /// All of these, of any loss.
    const QStringList &lapValues() const { return m_lapValues; }
    /// Adds the finding, if there is one; no line is blamed then.
    void report();

    /// Whether a finding says why nobody is in the player's car.
    bool isDriverExplained() const { return m_isDriverExplained; }

private:
    struct Loss {
        InfoBlame blame;
        bool isItself = false;
        bool isDriver = false;
        int entries = 0; ///< after the line that is to blame
        QStringList names; ///< of the first of them
        QStringList lapValues;
    };

    static QString sentence(const Loss &loss);

    const FollowedDriver &m_driver;
    FindingList *m_findings;
    std::vector<InfoBlame> m_suspects;
    std::optional<Loss> m_loss;
    QStringList m_lapValues; ///< of all losses
    bool m_isDriverExplained = false;
};

/// Some of \a names, as a verdict lists them: "TeamName, IRating and 3 more".
QString listedNames(const QStringList &names);
