#include "inspect/lapinfo.h"

#include "inspect/findinglist.h"
#include "inspect/infoindentation.h"
#include "inspect/infolosses.h"
#include "yaml/yamltree.h"

#include <algorithm>

namespace {

const QLatin1String FuelLevel("FuelLevel");

/// Not every version of the simulator writes these, or not for every car.
bool isOptional(const QString &key)
{
    return key == QLatin1String("ClubName") || key == QLatin1String("DivisionName")
        || key == FuelLevel;
}

/// "32.65 C". A simulator that does not know a value may leave it out.
bool isMeasurement(const QString &text)
{
    const QString words = text.simplified();
    const int numberEnd = words.indexOf(QLatin1Char(' '));
    bool isNumber = false;
    words.leftRef(numberEnd).toDouble(&isNumber);
    return isNumber && numberEnd > 0
        && std::all_of(words.begin() + numberEnd + 1, words.end(),
                       [](QChar c) { return c.isLetter() || c == QLatin1Char('/'); });
}

bool isWhatWasWritten(const QString &text, LapInfoKind kind)
{
    if (std::any_of(text.begin(), text.end(), isControl))
        return false;
    bool isNumber = true;
    if (kind == LapInfoKind::Number)
        text.toDouble(&isNumber);
    return isNumber && (kind != LapInfoKind::Measurement || isMeasurement(text));
}

QString listed(const QStringList &keys)
{
    return listedNames(keys)
        % (keys.size() == 1 ? QLatin1String(" is missing") : QLatin1String(" are missing"));
}

void addLost(Finding *finding, const QStringList &keys, const InfoPlace &place,
             FindingList *findings)
{
    if (place.number > 0)
        finding->at(place.offset).inLine(place.number, quotedLine(place.text));
    findings->add(finding->loses(listedNames(keys)));
}

} // namespace

LapInfo::LapInfo(const TYamlTree &tree, int carIdx, const QVector<int> &sessions) : m_tree(tree)
{
    const auto add = [this](const QString &node, const LapInfoKey &key) {
        m_values.append({node, QLatin1String(key.key), key.kind, {}});
    };
    for (const LapInfoKey &key : LapWeekendKeys)
        add(QStringLiteral("WeekendInfo"), key);
    for (const LapInfoKey &key : LapFuelKeys)
        add(QStringLiteral("DriverInfo"), key);
    for (const LapInfoKey &key : LapDriverKeys)
        add(QStringLiteral("DriverInfo/Drivers/%1").arg(carIdx), key);
    for (const int session : sessions)
        add(QStringLiteral("SessionInfo/Sessions/%1").arg(session), {"SessionType"});
    add(QStringLiteral("CarSetup/Chassis/Rear"), {FuelLevel.data()});
    for (int i = 0; i < m_values.size(); ++i) {
        const Value &value = m_values.at(i);
        m_indexes.insert(value.node % QLatin1Char('/') % value.path, i);
        m_lines.insert(value.key(), {});
        if (valueOf(value).isNull())
            m_missing.append(value.key());
    }
}

QString LapInfo::keyOf(const InfoIndentation &levels, const InfoLine &line) const
{
    constexpr int Deepest = 3;
    if (levels.size() > Deepest || !m_lines.contains(line.name))
        return QString();
    QString path;
    for (int i = 0; i < levels.size(); ++i)
        path += levels.at(i).name % QLatin1Char('/');
    return m_indexes.contains(path % line.name) ? line.name : QString();
}

void LapInfo::read(const InfoIndentation &levels, const InfoLine &line, const InfoPlace &place)
{
    if (line.kind == InfoLine::Kind::Section)
        m_section = line.name;
    const auto known = m_lines.find(line.name);
    // Set-ups have fuel in other places as well.
    if (known == m_lines.end() || (line.name == FuelLevel && m_section != QLatin1String("Rear")))
        return;
    if (known->number == 0)
        *known = place;
    if (keyOf(levels, line).isEmpty())
        return;
    for (Value &value : m_values) {
        if (value.key() == line.name)
            value.place = place;
    }
}

void LapInfo::readGarbled(const InfoPlace &place)
{
    if (m_garbled.number == 0)
        m_garbled = place;
}

QString LapInfo::valueOf(const Value &value) const
{
    return m_tree.pathValue(value.node % QLatin1Char('/') % value.path);
}

/// Whether the node has so many of its values that it should have this one, too.
bool LapInfo::isUsual(const Value &value) const
{
    int all = 0;
    int present = 0;
    for (const Value &other : m_values) {
        if (other.node != value.node || isOptional(other.key()))
            continue;
        ++all;
        present += valueOf(other).isNull() ? 0 : 1;
    }
    return !isOptional(value.key()) && 2 * present >= all;
}

void LapInfo::reportMissing(const QStringList &missing, const QMap<QString, InfoPlace> &misspelled,
                            FindingList *findings) const
{
    QStringList elsewhere;
    QStringList garbled;
    InfoPlace first;
    for (const Value &value : m_values) {
        const QString key = value.key();
        if (!missing.contains(key))
            continue;
        if (misspelled.contains(key)) {
            Finding finding(FindingKind::TextMissing,
                            QStringLiteral("should probably be %1, which is missing").arg(key));
            addLost(&finding, {key}, misspelled.value(key), findings);
        } else if (m_lines.value(key).number > 0) {
            if (elsewhere.isEmpty())
                first = m_lines.value(key);
            elsewhere.append(key);
        } else if (m_garbled.number > 0 && isUsual(value)) {
            garbled.append(key);
        }
    }
    if (!elsewhere.isEmpty()) {
        Finding finding(FindingKind::TextMissing,
                        listed(elsewhere)
                            % QLatin1String(" where laps look for it, but written elsewhere"));
        addLost(&finding, elsewhere, first, findings);
    }
    if (!garbled.isEmpty()) {
        Finding finding(FindingKind::TextMissing,
                        QLatin1String("was not written by a simulator, and ") % listed(garbled));
        addLost(&finding, garbled, m_garbled, findings);
    }
}

void LapInfo::reportOdd(const QStringList &known, FindingList *findings) const
{
    for (const Value &value : m_values) {
        const QString text = valueOf(value);
        if (text.isNull() || known.contains(value.key()) || isWhatWasWritten(text, value.kind))
            continue;
        Finding finding(FindingKind::TextValue,
                        value.kind == LapInfoKind::Text
                            ? QStringLiteral("contains a character that no name has")
                            : QStringLiteral("has no %1 as its value")
                                  .arg(value.kind == LapInfoKind::Number
                                           ? QLatin1String("number")
                                           : QLatin1String("number with a unit")));
        addLost(&finding, {value.key()}, value.place, findings);
    }
}

bool isMisspelled(const QString &name, const QString &other)
{
    const int shorter = std::min(name.size(), other.size());
    if (std::max(name.size(), other.size()) > shorter + 1)
        return false;
    const auto begin = std::mismatch(name.begin(), name.begin() + shorter, other.begin());
    const auto end = std::mismatch(name.rbegin(), name.rbegin() + shorter, other.rbegin());
    const int same = int(begin.first - name.begin()) + int(end.first - name.rbegin());
    return name != other && same >= std::max(name.size(), other.size()) - 1;
}
