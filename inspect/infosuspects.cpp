#include "inspect/infosuspects.h"

namespace {

using Kind = InfoLine::Kind;

/// "Drivers: ", which is a value, but perhaps meant as a section.
bool isEmptyValue(const InfoLine &line)
{
    return line.kind == Kind::Value && line.value.trimmed().isEmpty();
}

} // namespace

void InfoSuspects::enter(const InfoLine &line, const InfoPlace &place, InfoIndentation *levels)
{
    suspectLevels(line, levels);
    switch (levels->enter(line)) {
    case InfoIndentation::Place::Expected:
        break;
    case InfoIndentation::Place::Odd:
        m_suspect = {place, FindingKind::TextIndentation,
                     QStringLiteral("is indented by %1 spaces instead of %2")
                         .arg(line.column)
                         .arg(levels->expectedColumn(line))};
        if (!m_indented)
            m_indented = Indented{*m_suspect, line.column};
        break;
    case InfoIndentation::Place::Resumed:
        m_suspect = blameBefore(FindingKind::TextIndentation,
                                QStringLiteral("is indented by %1 and the next line by %2 spaces; "
                                               "if it belongs to the line before, that line is "
                                               "cut off")
                                    .arg(m_before->line.column)
                                    .arg(line.column));
        break;
    }
}

/// Suspects the entry before if it opened a level that the reader does not see, or the other way
/// round.
void InfoSuspects::suspectLevels(const InfoLine &line, InfoIndentation *levels)
{
    if (!m_before)
        return;
    if (isEmptyValue(m_before->line)) {
        if (!InfoIndentation::isPart(line, m_before->line))
            return;
        levels->open(m_before->line, nullptr);
        m_suspect =
            blameBefore(FindingKind::TextSectionBlank,
                        QStringLiteral("is read as a value because of the space after its colon"));
    } else if (m_before->line.kind != Kind::Value && !levels->canContain(line)) {
        m_suspect = m_before->line.kind == Kind::Item
            ? blameBefore(FindingKind::TextShortItem,
                          QStringLiteral("is the only line of its list item, so what follows is "
                                         "read as part of it"))
            : blameBefore(
                FindingKind::TextEmptySection,
                QStringLiteral("contains nothing, so what follows is read as part of it"));
        m_suspect->leadsToDriver = m_before->leadsToDriver;
    }
}

InfoBlame InfoSuspects::blameBefore(FindingKind kind, const QString &reason) const
{
    return {m_before->place, kind, reason};
}

void InfoSuspects::leave(const InfoLine &line, const InfoPlace &place, bool leadsToDriver)
{
    m_before = Entry{line, place, leadsToDriver};
}

void InfoSuspects::acquit(int column)
{
    m_suspect.reset();
    if (m_indented && column < m_indented->column)
        m_indented.reset();
}

bool InfoSuspects::areAny() const
{
    return m_suspect || m_indented || (m_before && m_before->line.kind != Kind::Value);
}

std::optional<InfoBlame> InfoSuspects::take()
{
    std::optional<InfoBlame> blame = m_suspect;
    if (!blame && m_indented)
        blame = m_indented->blame;
    m_suspect.reset();
    m_indented.reset();
    return blame;
}
