// Input: what users type and recordings contain, as `zepimport` reads and shows it. Choices must
// find what they name or say why not, tables must fit, JSON must be read back unchanged, and an
// inspection must find nobody in the player's car exactly if the reader follows nobody. Laps are
// tested in zepimportlaps.cpp.

#include "fuzz/bytesource.h"
#include "fuzz/require.h"
#include "fuzz/zepimportlaps.h"
#include "host/files/channelchoice.h"
#include "host/files/lapchoice.h"
#include "host/files/nearestnames.h"
#include "host/files/pluginregistry.h"
#include "host/text/displaytext.h"
#include "host/text/tablewriter.h"
#include "host/text/textwidth.h"
#include "inspect/findinglist.h"
#include "inspect/sessioninfoinspection.h"
#include "reader/irtelemetryreader.h"
#include "writers/jsonvalues.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QSet>

#include <algorithm>
#include <cstdint>
#include <memory>

namespace {

constexpr int MaxText = 40;

/// Qt prints warnings about wrong calls, and users would see them.
void refuseWarnings(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type != QtDebugMsg)
        require(QLatin1String("no warning: ") % message);
}

/// Text of any characters, including lone surrogates, or of Latin-1 only.
QString text(ByteSource *source)
{
    const int form = source->below(4);
    const int size = source->below(MaxText);
    if (form > 0)
        return QString::fromLatin1(source->bytes(size));
    QString result;
    for (int i = 0; i < size; ++i)
        result.append(QChar(source->take<std::uint16_t>()));
    return result;
}

QStringList texts(ByteSource *source, int most)
{
    QStringList result;
    for (int i = source->below(most + 1); i > 0; --i)
        result.append(text(source));
    return result;
}

bool isShown(const QString &text)
{
    return printable(text) == text;
}

void chooseLaps(ByteSource *source)
{
    Laps laps;
    for (int i = 1 + source->below(12); i > 0; --i) {
        laps.push_back(std::make_unique<ZEP::Lap>());
        laps.back()->setLapTime(QTime::fromMSecsSinceStartOfDay(source->take<std::uint16_t>()));
        laps.back()->setLapType(ZEP::LapType(source->below(4) - 1));
        laps.back()->setCompleted(source->below(2) == 1);
    }
    const QString typed = text(source);
    QString problem;
    const std::optional<LapChoice> choice = LapChoice::parse(typed, &problem);
    require(choice.has_value() == problem.isEmpty(), "a choice, or a problem");
    if (!choice)
        return;
    const QVector<int> indices = choice->indices(laps, &problem);
    require(indices.isEmpty() != problem.isEmpty(), "laps, or a problem");
    for (const int index : indices)
        require(index >= 0 && index < int(laps.size()), "laps of the file");
    require(QSet<int>(indices.begin(), indices.end()).size() == indices.size(), "each lap once");
    const std::optional<LapChoice> again = LapChoice::parse(choice->text(), &problem);
    require(again && again->indices(laps, &problem) == indices, "the same choice in its own words");
}

void chooseChannels(ByteSource *source)
{
    QVector<ZEP::Lap> laps(1 + source->below(3));
    for (ZEP::Lap &lap : laps) {
        ZEP::Sample sample;
        for (const QString &name : texts(source, 6))
            sample.addValue(name, 1.0, QString());
        sample.addValue(QStringLiteral("speed"), 1.0, QString());
        lap.addSample(sample);
    }
    QVector<const ZEP::Lap *> chosen;
    for (const ZEP::Lap &lap : laps)
        chosen.append(&lap);

    QString problem;
    const QVector<ChosenChannel> channels =
        ChannelChoice(texts(source, 3)).channels(chosen, &problem);
    require(channels.isEmpty() != problem.isEmpty(), "channels, or a problem");
    QSet<QString> names;
    for (const ChosenChannel &channel : channels) {
        require(!names.contains(channel.name), "each channel once");
        names.insert(channel.name);
        require(std::any_of(chosen.begin(), chosen.end(),
                            [&](const ZEP::Lap *lap) { return !channel.in(*lap).isNull(); }),
                "channels of the laps");
    }
}

void suggest(ByteSource *source)
{
    const QString typed = text(source);
    const QStringList names = texts(source, 8);
    const QStringList nearest = nearestNames(typed, names);
    require(nearest.size() <= 3, "three names at most");
    for (const QString &name : nearest)
        require(names.contains(name), "names that there are");
    if (names.contains(typed))
        require(nearest.contains(typed) || nearest.size() == 3, "the very name");
    require(didYouMean(typed, names).isEmpty() == nearest.isEmpty(), "names, or nothing");
    formatWildcards(typed);
}

void writeTable(ByteSource *source)
{
    QVector<TableWriter::Column> columns(1 + source->below(6));
    int widest = -2;
    for (TableWriter::Column &column : columns) {
        column.title = printable(text(source)).trimmed();
        column.align = source->below(2) ? TableWriter::Align::Right : TableWriter::Align::Left;
        column.rank = source->below(4);
        column.shortest = source->below(3) ? source->below(10) : 0;
    }
    TableWriter table(columns);
    const int rows = source->below(6);
    for (int row = 0; row < rows; ++row) {
        QStringList cells = texts(source, columns.size() + 1);
        for (QString &cell : cells)
            cell = cell.trimmed(); // spaces at the end of a line are counted, but not written
        table.addRow(cells);
    }

    const QString whole = table.text();
    require(whole.isEmpty() || whole.endsWith(QLatin1Char('\n')), "lines that end");
    for (const QString &line : whole.split(QLatin1Char('\n'))) {
        require(!line.endsWith(QLatin1Char(' ')), "no blanks at the end of a line");
        require(isShown(line), "nothing that a terminal obeys");
        widest = std::max(widest, displayWidth(line));
    }
    const int width = 1 + source->below(120);
    const QString fitted = table.text(width);
    require(fitted.count(QLatin1Char('\n')) <= whole.count(QLatin1Char('\n')), "as many lines");
    const int gaps = 2 * columns.size(); // also next to columns in which every cell is empty
    if (widest + gaps <= width)
        require(fitted == whole, "what fits stays");
    const bool canShrink =
        std::all_of(columns.begin(), columns.end(),
                    [](const TableWriter::Column &column) { return column.rank > 0; });
    int fittedWidth = 0;
    for (const QString &line : fitted.split(QLatin1Char('\n')))
        fittedWidth = std::max(fittedWidth, displayWidth(line));
    if (canShrink)
        require(fittedWidth <= width, "a table that fits");
    table.text(width, true);
}

void cutText(ByteSource *source)
{
    const QString whole = text(source);
    const int width = 1 + source->below(MaxText);
    const QString cut = elided(whole, width);
    require(displayWidth(cut) <= width, "no wider than asked for");
    require(displayWidth(whole) > width || cut == whole, "what fits stays");
    require(isShown(printable(whole)), "nothing that a terminal obeys");
}

QVariant variant(ByteSource *source)
{
    switch (source->below(6)) {
    case 0:
        return text(source);
    case 1:
        return source->take<double>();
    case 2:
        return source->take<qint32>();
    case 3:
        return QTime::fromMSecsSinceStartOfDay(source->take<qint32>());
    case 4:
        return QDateTime::fromMSecsSinceEpoch(source->take<qint64>() / 1024);
    default:
        return source->below(2) == 1;
    }
}

void formatValues(ByteSource *source)
{
    QJsonArray array;
    for (int i = source->below(4); i >= 0; --i) {
        const ZEP::Value value(variant(source), text(source));
        require(!formatValue(value).isEmpty(), "something to show");
        array.append(jsonValue(value));
        array.append(jsonText(text(source)));
        array.append(jsonQuantity(Quantity{source->take<double>(), text(source)}));
        array.append(jsonTime(source->take<qint32>()));
    }
    const QByteArray json = QJsonDocument(array).toJson();
    QJsonParseError error;
    const QJsonDocument read = QJsonDocument::fromJson(json, &error);
    require(error.error == QJsonParseError::NoError, "JSON");
    require(QJsonDocument(read.array()).toJson() == json, "the same JSON once more");

    const double number = source->take<double>();
    const QString shown = formatNumber(number);
    bool isNumber = false;
    const double back = shown.toDouble(&isNumber);
    if (qIsFinite(number))
        require(isNumber && qAbs(back - number) <= qAbs(number) * 1e-5, "the same number");
    formatQuantity(Quantity{number, text(source)}, source->below(4));
    formatLapTime(source->take<qint32>());
}

void inspect(ByteSource *source)
{
    const QByteArray info = source->rest();
    FindingList list;
    inspectSessionInfo(info.constData(), {}, &list);
    const QVector<Finding> findings = list.findings();
    bool isFollowed = true;
    for (const Finding &finding : findings) {
        require(!finding.text.isEmpty() && isShown(finding.quote), "a sentence");
        require(finding.offset.value_or(0) <= info.size(), "a place in the text");
        isFollowed = isFollowed && finding.lost != QLatin1String("all laps");
    }
    iRTelemetryReader reader;
    reader.setYaml(info.constData());
    reader.updateCarList();
    const bool hasDriver = reader.hasMyCar() && !reader.driverName(reader.myCarIdx()).isEmpty();
    require(hasDriver == isFollowed, "all laps are lost exactly where nobody is followed");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const bool isWatched = [] {
        QLoggingCategory::defaultCategory()->setEnabled(QtWarningMsg, true);
        qInstallMessageHandler(refuseWarnings);
        return true;
    }();
    Q_UNUSED(isWatched)
    static constexpr std::array<void (*)(ByteSource *), 13> parts = {
        chooseLaps, chooseChannels, suggest,    writeTable,  cutText,     formatValues, inspect,
        exportCsv,  exportJson,     nameFields, compareLaps, packSamples, reportLaps};
    ByteSource source(data, size);
    source.pick(parts)(&source);
    return 0;
}
