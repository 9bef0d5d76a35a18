#include "fuzz/zepimportlaps.h"

#include "analysis/lapbydistance.h"
#include "analysis/lapcomparison.h"
#include "fuzz/bytesource.h"
#include "fuzz/require.h"
#include "host/files/channelchoice.h"
#include "host/report/reportdata.h"
#include "host/report/samplepacker.h"
#include "host/text/textchart.h"
#include "host/text/textwidth.h"
#include "tests/support/samebits.h"
#include "writers/csvwriter.h"
#include "writers/jsonlapwriter.h"
#include "writers/matoutput.h"
#include "writers/outputfile.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

namespace {

constexpr double Inf = std::numeric_limits<double>::infinity();
constexpr double Huge = std::numeric_limits<double>::max();
constexpr double Tiny = std::numeric_limits<double>::denorm_min();

constexpr std::array<double, 24> Samples = {0.0,
                                            -0.0,
                                            1.0,
                                            -1.0,
                                            0.1,
                                            0.5,
                                            0.99,
                                            3.0,
                                            60.0,
                                            100.0,
                                            4000.0,
                                            1e9,
                                            1e16,
                                            1e23,
                                            ZEP::Channel::ValidBelow,
                                            ZEP::Channel::NoData,
                                            1e300,
                                            -1e300,
                                            Huge,
                                            -Huge,
                                            Inf,
                                            -Inf,
                                            Tiny,
                                            std::numeric_limits<double>::quiet_NaN()};

constexpr std::array Names = {"lapdist",    "lapdistpct",    "sessiontime", "lapcurrentlaptime",
                              "speed",      "fuellevel",     "lat",         "lon",
                              "throttle",   "rpm",           "lftempcl",    "rrwearm",
                              "lfpressure", "tracktempcrew", "skies",       "a,b",
                              "line\nfeed", "say \"so\"",    "lap",         "tick",
                              "speed [m/s]"};

constexpr std::array Units = {"", "m", "km", "s", "m/s", "%", ",", "\"", "C"};

QString shortText(ByteSource *source)
{
    return QString::fromLatin1(source->bytes(source->below(12)));
}

/// Sometimes as cars drive, sometimes as no car does.
QVector<double> samples(ByteSource *source, int count)
{
    QVector<double> result(count);
    const int form = source->below(4);
    const double first = form == 3 ? source->take<double>() : source->pick(Samples);
    const double step = form == 1 ? double(source->take<float>()) : source->pick(Samples) / 64;
    for (int i = 0; i < count; ++i)
        result[i] = form == 2 ? source->pick(Samples) : first + i * step;
    for (int i = source->below(4); i > 0 && count > 0; --i)
        result[source->below(count)] = source->pick(Samples);
    return result;
}

std::unique_ptr<ZEP::Lap> takeLap(ByteSource *source)
{
    auto lap = std::make_unique<ZEP::Lap>();
    lap->setLapTime(QTime::fromMSecsSinceStartOfDay(source->take<std::uint16_t>()));
    lap->setLapType(ZEP::LapType(source->below(4) - 1));
    lap->setCompleted(source->below(4) > 0);
    lap->addValue(QStringLiteral("Track length"),
                  ZEP::Value(source->pick(Samples), QLatin1String(source->pick(Units))));
    const int ticks = source->below(200);
    for (int i = source->below(12); i > 0; --i) {
        auto channel = std::make_unique<ZEP::Channel>();
        const int form = source->below(16);
        const QString name = form == 0 ? shortText(source) : QLatin1String(source->pick(Names));
        channel->setUnit(QLatin1String(source->pick(Units)));
        channel->data = samples(source, form == 1 ? ticks / 2 : ticks);
        if (form == 2)
            lap->addCalculatedChannel(channel.release(), name);
        else
            lap->addChannel(channel.release(), name);
    }
    return lap;
}

Laps takeLaps(ByteSource *source)
{
    Laps laps;
    for (int i = 1 + source->below(3); i > 0; --i)
        laps.push_back(takeLap(source));
    return laps;
}

QVector<const ZEP::Lap *> pointers(const Laps &laps)
{
    QVector<const ZEP::Lap *> result;
    for (const auto &lap : laps)
        result.append(lap.get());
    return result;
}

QVector<ChosenChannel> allChannels(const Laps &laps)
{
    QString problem;
    return ChannelChoice().channels(pointers(laps), &problem);
}

/// The content of a file after \a write.
template <typename Write>
QByteArray written(Write write)
{
    static const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("laps"));
    OutputFile output(name);
    QString problem;
    require(output.open(true, &problem) && (write(output), output.commit(&problem)), "a file");
    QFile file(name);
    require(file.open(QIODevice::ReadOnly), "a file to read");
    return file.readAll();
}

/// The fields of each line. Fields with separators, quotes or line breaks are in quotes.
QVector<QStringList> parsedCsv(const QByteArray &csv, char separator)
{
    QVector<QStringList> lines;
    QStringList fields;
    QByteArray field;
    bool isQuoted = false;
    for (int i = 0; i < csv.size(); ++i) {
        const char c = csv.at(i);
        if (c == '"' && isQuoted && i + 1 < csv.size() && csv.at(i + 1) == '"') {
            field += csv.at(++i);
        } else if (c == '"') {
            isQuoted = !isQuoted;
        } else if (!isQuoted && (c == separator || c == '\n')) {
            fields.append(QString::fromUtf8(field));
            field.clear();
            if (c == '\n')
                lines.append(std::exchange(fields, {}));
        } else {
            field += c;
        }
    }
    require(!isQuoted && field.isEmpty() && fields.isEmpty(), "whole lines");
    return lines;
}

int longestChannel(const ZEP::Lap &lap, const QVector<ChosenChannel> &channels)
{
    int longest = 0;
    for (const ChosenChannel &channel : channels) {
        if (const auto there = channel.in(lap))
            longest = std::max(longest, there->data.size());
    }
    return longest;
}

/// The number of steps of each sample; none for a missing sample.
QVector<std::optional<qint64>> unpacked(const QByteArray &bytes)
{
    QVector<std::optional<qint64>> all;
    quint64 number = 0;
    int shift = 0;
    for (const char c : bytes) {
        require(shift < 64, "numbers that fit");
        number |= quint64(c & 0x7f) << shift;
        shift += 7;
        if (c & 0x80)
            continue;
        if (number == 0)
            all.append(std::nullopt);
        else
            all.append(number & 1 ? qint64(number / 2) : -qint64(number / 2));
        number = 0;
        shift = 0;
    }
    require(shift == 0, "whole numbers");
    return all;
}

} // namespace

void exportCsv(ByteSource *source)
{
    static constexpr std::array separators = {',', ';', '\t'};
    const char separator = source->pick(separators);
    CsvWriter::Form form;
    form.separator = separator;
    form.units = CsvWriter::Units(source->below(3));
    Laps laps = takeLaps(source);
    const QVector<ChosenChannel> channels = allChannels(laps);
    const Laps expected = [&laps] {
        Laps copies;
        for (const auto &lap : laps)
            copies.push_back(std::make_unique<ZEP::Lap>(*lap));
        return copies;
    }();

    const QByteArray csv = written([&](OutputFile &file) {
        CsvWriter writer(file, channels, pointers(expected), form);
        for (std::size_t i = 0; i < laps.size(); ++i)
            writer.write(int(i) + 1, std::move(laps[i]));
        QString problem;
        require(writer.finish(&problem), "laps of any kind");
    });
    const QVector<QStringList> lines = parsedCsv(csv, separator);
    for (const QStringList &line : lines)
        require(line.size() == channels.size() + 2, "a field for each channel");
    const QStringList &titles = lines.first();
    require(QSet<QString>(titles.begin(), titles.end()).size() == titles.size(), "each title once");

    int row = form.units == CsvWriter::Units::Row ? 2 : 1;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const int ticks = longestChannel(*expected[i], channels);
        for (int tick = 0; tick < ticks; ++tick, ++row) {
            require(row < lines.size(), "a row for each tick");
            const QStringList &line = lines.at(row);
            require(line.at(0).toInt() == int(i) + 1 && line.at(1).toInt() == tick, "its place");
            for (int c = 0; c < channels.size(); ++c) {
                const auto channel = channels.at(c).in(*expected[i]);
                const QString &field = line.at(c + 2);
                const bool isThere = channel && channel->isValid(tick);
                require(field.isEmpty() != isThere, "a text for each sample");
                if (isThere)
                    require(sameBits(field.toDouble(), channel->sample(tick)), "the same sample");
            }
        }
    }
    require(row == lines.size(), "no other rows");
}

void exportJson(ByteSource *source)
{
    Laps laps = takeLaps(source);
    const QVector<ChosenChannel> channels = allChannels(laps);
    Laps expected;
    for (const auto &lap : laps)
        expected.push_back(std::make_unique<ZEP::Lap>(*lap));

    const QString name = shortText(source);
    const QByteArray json = written([&](OutputFile &file) {
        JsonLapWriter writer(file, channels, name);
        for (std::size_t i = 0; i < laps.size(); ++i)
            writer.write(int(i) + 1, std::move(laps[i]));
        QString problem;
        require(writer.finish(&problem), "laps of any kind");
    });
    QJsonParseError error;
    const QJsonArray read = QJsonDocument::fromJson(json, &error).array();
    require(error.error == QJsonParseError::NoError, "JSON");
    require(read.size() == int(expected.size()), "an object for each lap");
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const QJsonObject lap = read.at(int(i)).toObject();
        require(lap.value(QLatin1String("file")).toString() == name, "the name of the file");
        for (const ChosenChannel &chosen : channels) {
            const auto channel = chosen.in(*expected[i]);
            const QJsonArray samples =
                lap.value(QLatin1String(chosen.isCalculated ? "calculatedChannels" : "channels"))
                    .toObject()
                    .value(chosen.name)
                    .toObject()
                    .value(QLatin1String("samples"))
                    .toArray();
            require(samples.size() == (channel ? channel->data.size() : 0), "all samples");
            for (int tick = 0; tick < samples.size(); ++tick) {
                const bool isThere = channel->isValid(tick);
                require(samples.at(tick).isNull() != isThere, "a number for each sample");
                // Qt reads -0.0 as 0.
                if (isThere && samples.at(tick).isString())
                    require(samples.at(tick).toString().toDouble() == channel->sample(tick),
                            "infinity as such");
                else if (isThere)
                    require(samples.at(tick).toDouble() == channel->sample(tick),
                            "the same sample");
            }
        }
    }
}

void nameFields(ByteSource *source)
{
    QStringList names;
    for (int i = source->below(12); i > 0; --i)
        names.append(source->below(2) ? shortText(source)
                                      : QString(source->below(80), QChar(u'a' + source->below(2))));
    const QStringList fields = matFieldNames(names);
    require(fields.size() == names.size(), "a field for each name");
    require(QSet<QString>(fields.begin(), fields.end()).size() == fields.size(), "each once");
    static const QRegularExpression isField(QStringLiteral("\\A[A-Za-z][A-Za-z0-9_]{0,62}\\z"));
    for (int i = 0; i < fields.size(); ++i) {
        require(isField.match(fields.at(i)).hasMatch(), "a name that MAT files allow");
        if (isField.match(names.at(i)).hasMatch() && names.indexOf(names.at(i)) == i)
            require(fields.indexOf(names.at(i)) >= 0, "the name as it was");
    }
}

void compareLaps(ByteSource *source)
{
    constexpr double places = 300;
    const std::unique_ptr<ZEP::Lap> laps[] = {takeLap(source), takeLap(source)};
    QString problems[2];
    const std::optional<LapByDistance> a = LapByDistance::of(*laps[0], &problems[0]);
    const std::optional<LapByDistance> b = LapByDistance::of(*laps[1], &problems[1]);
    require(a.has_value() == problems[0].isEmpty() && b.has_value() == problems[1].isEmpty(),
            "a curve, or a problem");
    if (!a)
        return;
    const LapComparison comparison(*a, b ? *b : *a, a->length() / places);
    require(comparison.points.size() >= 2, "places from line to line");
    require(sameBits(comparison.points.back().distance, a->length()), "places up to the line");
    double driven = 0;
    for (const LapComparison::Stretch &stretch : comparison.stretches) {
        require(stretch.begin < stretch.end, "a stretch forwards");
        driven += stretch.end - stretch.begin;
    }
    require(std::abs(driven - a->length()) <= 1e-9 * a->length(), "stretches of the whole lap");

    TextChart::Curve difference;
    TextChart::Curve speed;
    speed.name = QStringLiteral("A");
    speed.colour = TextChart::Colour::Cyan;
    for (const LapComparison::Point &point : comparison.points) {
        difference.values.append(point.difference());
        speed.values.append(point.speeds[0]);
    }
    const int width = TextChart::LeastWidth + source->below(100);
    const int height = TextChart::LeastHeight + source->below(30);
    const TextChart chart(a->length(), QStringLiteral("m"));
    const QStringList lines =
        chart.text(QStringLiteral("Speed"), {difference, speed}, width, height, false)
            .split(QLatin1Char('\n'));
    require(lines.size() == height + 1, "as many lines as asked for");
    for (const QString &line : lines)
        require(displayWidth(line) <= width, "a chart that fits");
}

void packSamples(ByteSource *source)
{
    QVector<QVector<double>> laps;
    for (int i = source->below(4); i > 0; --i)
        laps.append(samples(source, source->below(100)));
    static constexpr std::array parts = {1e6, 2e4, 1.0};
    const double wanted = source->pick(parts);
    const SamplePacker packer(laps, wanted);
    require(std::isfinite(packer.base()) && packer.step() > 0, "a scale");

    const QVector<std::optional<qint64>> changes = unpacked(packer.bytes());
    int next = 0;
    for (const QVector<double> &lap : laps) {
        qint64 steps = 0;
        for (const double sample : lap) {
            require(next < changes.size(), "a number for each sample");
            const std::optional<qint64> change = changes.at(next++);
            require(change.has_value() == (std::abs(sample) < 1e300), "missing ones as missing");
            if (!change)
                continue;
            steps += *change;
            const double back = packer.base() + packer.step() * double(steps);
            // Half a step, and the precision of doubles of that size.
            const double apart = std::abs(back - sample);
            const double rounded = 4 * std::numeric_limits<double>::epsilon()
                * std::max(std::abs(sample), std::abs(packer.base()));
            require(apart <= packer.step() * 0.5000001 + rounded, "the same sample, but a step");
            require(!packer.isWhole() || sample == back, "whole numbers exactly");
        }
    }
    require(next == changes.size(), "no other numbers");
}

void reportLaps(ByteSource *source)
{
    ChosenLaps chosen;
    chosen.file.fileName = shortText(source);
    chosen.file.laps = takeLaps(source);
    for (int i = 0; i < int(chosen.file.laps.size()); ++i)
        chosen.indices.append(i);
    const QVector<ChosenChannel> further = allChannels(chosen.file.laps);

    ReportData data;
    data.add(chosen, further);
    const QJsonObject json = data.json();
    require(json.value(QLatin1String("laps")).toArray().size() == chosen.indices.size(),
            "all laps");
    QJsonParseError error;
    QJsonDocument::fromJson(QJsonDocument(json).toJson(), &error);
    require(error.error == QJsonParseError::NoError, "JSON");

    int expected = 0;
    for (const auto &lap : chosen.file.laps)
        expected += lap->size();
    const int columns = json.value(QLatin1String("places")).toArray().size()
        + json.value(QLatin1String("channels")).toArray().size();
    const QByteArray packed =
        QByteArray::fromBase64(json.value(QLatin1String("samples")).toString().toLatin1());
    const QByteArray anySize(4, '\0'); // the prefix that qUncompress() expects
    require(unpacked(qUncompress(anySize + packed)).size() == columns * expected,
            "a number for each sample");
}
