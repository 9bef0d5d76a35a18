#include "host/commands/listing.h"

#include "analysis/lapsummary.h"
#include "host/text/displaytext.h"
#include "host/text/terminal.h"

#include <QJsonDocument>

#include <algorithm>
#include <vector>

void Listing::declare(CommandOptions &options, const std::string &instead)
{
    m_json.declare(options, instead);
}

void Listing::separate(Terminal &terminal)
{
    if (!m_isFirst)
        terminal.print(QStringLiteral("\n"));
    m_isFirst = false;
}

void Listing::printHeading(const QString &line, Terminal &terminal)
{
    separate(terminal);
    terminal.printHeading(line);
}

void Listing::printLapHeading(const ChosenLaps &chosen, int index, Terminal &terminal)
{
    const ZEP::Lap &lap = chosen.lap(index);
    const std::optional<int> time = lapTime(lap);
    printHeading(QStringLiteral("%1: lap #%2 of %3, %4%5")
                     .arg(chosen.file.fileName, QString::number(index + 1),
                          QString::number(chosen.file.laps.size()), lapKindName(lapKind(lap)),
                          time ? QString(QLatin1String(", ") % formatLapTime(time)) : QString()),
                 terminal);
}

void Listing::addJson(const QString &fileName, QJsonObject object)
{
    object.insert(QStringLiteral("file"), fileName);
    m_array.append(object);
}

void Listing::sortJson(const QString &key)
{
    std::vector<QJsonObject> objects;
    for (const QJsonValue &value : qAsConst(m_array))
        objects.push_back(value.toObject());
    std::stable_sort(
        objects.begin(), objects.end(), [&key](const QJsonObject &left, const QJsonObject &right) {
            const QJsonValue a = left.value(key);
            const QJsonValue b = right.value(key);
            if (a.isNull() || b.isNull())
                return !a.isNull();
            return a.isDouble() ? a.toDouble() < b.toDouble() : a.toString() < b.toString();
        });
    m_array = QJsonArray();
    for (const QJsonObject &object : objects)
        m_array.append(object);
}

bool Listing::takeJson(const QByteArray &output)
{
    const QJsonDocument document = QJsonDocument::fromJson(output);
    if (!document.isArray())
        return false;
    for (const QJsonValue &value : document.array())
        m_array.append(value);
    return true;
}

FileWork Listing::work(Terminal &terminal)
{
    FileWork work;
    work.takeOutput = [this, &terminal](const QByteArray &output) {
        if (takeJson(output))
            return;
        separate(terminal);
        terminal.print(QString::fromUtf8(output));
    };
    work.finish = [this, &terminal] {
        finish(terminal);
        return ExitCode::Success;
    };
    return work;
}

void Listing::finish(Terminal &terminal) const
{
    if (wantsJson())
        JsonOption::print(m_array, terminal);
}

QStringList Listing::arguments() const
{
    return wantsJson() ? QStringList(QStringLiteral("--json")) : QStringList();
}
