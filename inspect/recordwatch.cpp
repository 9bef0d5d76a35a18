#include "inspect/recordwatch.h"

#include "inspect/findinglist.h"

#include <algorithm>
#include <iterator>

RecordWatch::RecordWatch(const irsdk_header &header, const irsdk_varHeader *table)
    : m_begin(header.varBuf[0].bufOffset), m_recordSize(header.bufLen),
      m_times(header, table,
              [this](qint64 record, bool isOther) {
                  m_foreign.push_back(record);
                  if (isOther)
                      m_others.push_back(record);
              }),
      m_values(header, table)
{
}

void RecordWatch::add(const char *record)
{
    if (std::all_of(record, record + m_recordSize, [](char c) { return c == 0; })) {
        ++m_empty;
        ++m_count;
        return;
    }
    // At the beginning they may be what was recorded.
    const bool isFirst = m_empty == m_count;
    const std::vector<char> empty(std::size_t(m_empty > 0 ? m_recordSize : 0));
    for (; m_empty > 0; --m_empty) {
        if (isFirst) {
            m_times.add(empty.data());
        } else {
            m_times.skip();
            m_foreign.push_back(m_count - m_empty);
        }
    }
    addFilled(record);
}

void RecordWatch::addFilled(const char *record)
{
    m_times.add(record);
    m_used.add(record, int(m_recordSize));
    if (!m_before.empty() && m_values.isForeign(m_before.data(), m_last.data(), record)) {
        m_foreign.push_back(m_count - 1);
        m_overwritten.push_back(m_count - 1);
    }
    m_before.swap(m_last);
    m_last.assign(record, record + m_recordSize);
    ++m_count;
}

void RecordWatch::report(FindingList *findings) const
{
    reportForeign(findings);
    m_times.report(findings);
}

void RecordWatch::end(std::optional<double> endTime)
{
    m_times.end(endTime);
    std::sort(m_foreign.begin(), m_foreign.end());
    m_foreign.erase(std::unique(m_foreign.begin(), m_foreign.end()), m_foreign.end());
    std::vector<qint64> renumbered;
    std::set_difference(m_others.begin(), m_others.end(), m_overwritten.begin(),
                        m_overwritten.end(), std::back_inserter(renumbered));
    m_others.swap(renumbered);
}

void RecordWatch::reportForeign(FindingList *findings) const
{
    const std::vector<qint64> &records = m_foreign;
    if (records.empty())
        return;
    const auto count = qint64(records.size());
    const qint64 first = records.front();
    QString text;
    if (count > 1 && first + count == filled())
        text = QStringLiteral("from record %1 on, no record fits the one before it; bytes were "
                              "inserted or lost there")
                   .arg(first + 1);
    else
        text = QStringLiteral("record %1 does not fit the records next to it").arg(first + 1)
            % (count > 1 ? QStringLiteral("; there are %1 such records").arg(count) : QString());
    findings->add(Finding(FindingKind::ForeignRecords, text)
                      .at(m_begin + first * m_recordSize)
                      .loses(QStringLiteral("%1 of %2 records").arg(count).arg(m_count))
                      .inRecords());
}
