#include "inspect/recordrepair.h"

#include "ibt/ibtformat.h"

#include <QFile>

#include <algorithm>
#include <cstring>

bool RecordRepair::isPossible(qint64 records) const
{
    constexpr qint64 LeastSound = 10; // for each that is not
    qint64 odd = qint64(foreign.size()) + repeated.size();
    for (const QPair<qint64, qint64> &gap : missing)
        odd += gap.second;
    return odd > 0 && odd * LeastSound <= records;
}

bool RecordRepair::write(const QString &fileName, QIODevice *to) const
{
    QFile from(fileName);
    irsdk_header header{};
    if (!from.open(QIODevice::ReadOnly))
        return false;
    const QByteArray begin = from.read(sizeof header);
    if (begin.size() < int(sizeof header))
        return false;
    std::memcpy(&header, begin.constData(), sizeof header);
    const qint64 offset = header.varBuf[0].bufOffset;
    if (header.bufLen <= 0 || offset < 0 || !from.seek(0) || to->write(from.read(offset)) != offset)
        return false;

    QByteArray sound; // the last record that is
    qint64 number = 0;
    for (QByteArray record; (record = from.read(header.bufLen)).size() == header.bufLen; ++number) {
        const bool isForeign = std::binary_search(foreign.begin(), foreign.end(), number);
        const bool isRenumbered = std::binary_search(renumbered.begin(), renumbered.end(), number);
        const auto gap = std::find_if(missing.begin(), missing.end(),
                                      [number](const auto &one) { return one.first == number; });
        for (qint64 i = 0; gap != missing.end() && i < gap->second; ++i)
            to->write(sound);
        if (isRenumbered && !sound.isEmpty())
            record.replace(sessionOffset, int(sizeof(qint32)),
                           sound.mid(sessionOffset, int(sizeof(qint32))));
        if (!isForeign || isRenumbered || sound.isEmpty())
            sound = record;
        if (!repeated.contains(number) && to->write(sound) != header.bufLen)
            return false;
    }
    return true;
}

QVector<Finding> findingsOutsideOfLaps(QVector<Finding> findings)
{
    for (Finding &finding : findings) {
        if (!finding.isAboutRecords)
            continue;
        finding.severity = Finding::Severity::Remark;
        finding.lost.clear();
        finding.text += QLatin1String("; no lap is changed by that");
    }
    return findings;
}
