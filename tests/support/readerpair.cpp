#include "tests/support/readerpair.h"

#include "tests/support/randomdrive.h"

namespace {

constexpr int LogSize = 12;
constexpr int KeptLaps = 4;

constexpr std::array Names = {"lapdistpct",
                              "sessionnum",
                              "isontrack",
                              "onpitroad",
                              "lap",
                              "sessionstate",
                              "lapcurrentlaptime",
                              "laplastlaptime",
                              "fuellevel",
                              "sessiontime",
                              "fulltelemetry",
                              "Speed",
                              "Yaw",
                              "yawOffset",
                              "aaa",
                              "zzz",
                              "maxLapDistPct",
                              "DateTime",
                              "Lap time",
                              "Track length",
                              "Kg per fuel litre",
                              "sessiontick",
                              "IsOnTrack",
                              "energybatterytomgu_klap"};

} // namespace

ReaderPair::ReaderPair(std::uint32_t seed, bool compiled)
    : m_random(seed ^ 0x5eedu), m_compiled(compiled),
      m_oddness(std::array{0.01, 0.05, 0.3}[seed % 3]), m_recording(seed),
      m_otherRecording(seed + 1)
{
    makeTables(seed);
    const QByteArray text = m_recording.sessionInfo();
    m_product.setDiskLoading(true);
    m_expected.setDiskLoading(true);
    m_product.setYaml(text.constData());
    m_expected.setYaml(text.constData());
    m_product.updateCarList();
    m_expected.updateCarList();
    if (compiled && chance(&m_random, 0.7))
        compile();
}

ReaderPair::~ReaderPair() = default;

void ReaderPair::makeTables(std::uint32_t seed)
{
    const auto add = [this](const irsdk_header &header, const QVector<irsdk_varHeader> &variables) {
        m_tables.push_back(std::make_unique<Table>(Table{header, variables}));
    };
    add(m_recording.header(), m_recording.variables());
    add(m_otherRecording.header(), m_otherRecording.variables());

    irsdk_header header = m_recording.header();
    header.numVars = below(&m_random, header.numVars + 1);
    add(header, m_recording.variables());
    header = m_recording.header();
    header.bufLen = below(&m_random, header.bufLen + 1) - int(seed % 2);
    add(header, m_recording.variables());
    header = m_recording.header();
    header.numVars = -1;
    add(header, m_recording.variables());

    QVector<irsdk_varHeader> variables = m_recording.variables();
    for (irsdk_varHeader &variable : variables) {
        if (chance(&m_random, 0.3))
            variable.type = below(&m_random, 8) - 1;
        if (chance(&m_random, 0.1))
            variable.offset = qint32(quint32(variable.offset) + quint32(below(&m_random, 9) - 4));
    }
    add(m_recording.header(), variables);
}

void ReaderPair::note(const QString &operation)
{
    m_log.append(operation);
    if (m_log.size() > LogSize)
        m_log.removeFirst();
}

int ReaderPair::anyCar()
{
    const int count = m_expected.carCount();
    const int mine = m_expected.myCarIdx();
    if (count == 0)
        return -1;
    return mine >= 0 && mine < count && chance(&m_random, 0.7) ? mine : below(&m_random, count);
}

QString ReaderPair::anyName()
{
    return QLatin1String(pick(&m_random, Names));
}

QVariant ReaderPair::anyValue()
{
    // Directly next to the limits that decide about laps.
    static constexpr std::array limits = {-0.5f,  -0.49f, 0.649f, 0.651f, 0.655f, 0.799f,
                                          0.801f, 0.805f, 0.899f, 0.91f,  0.95f,  0.39f,
                                          0.41f,  1.0f,   0.0f,   5.0f};
    switch (below(&m_random, 10)) {
    case 0:
        return QVariant();
    case 1:
        return QVariant(QStringLiteral("0.5"));
    case 2:
        return QVariant(below(&m_random, 7));
    case 3:
    case 4:
        return QVariant(chance(&m_random, 0.5));
    case 5:
        return QVariant(qQNaN());
    case 6:
        return QVariant(float(m_random.uniform(-0.1, 1.1)));
    default:
        return QVariant(pick(&m_random, limits));
    }
}

void ReaderPair::step()
{
    if (chance(&m_random, m_oddness))
        otherOperation();
    else
        tick();
}

void ReaderPair::tick()
{
    const auto maybeOther = [this] {
        if (chance(&m_random, m_oddness * 0.3))
            otherOperation();
    };
    // p: prepareTick, g: getRawData, d: processData
    static constexpr std::array orders = {"pd",   "pg",   "gd",  "d",    "g",   "p",    "pggd",
                                          "pgdd", "ppgd", "gpd", "pdgd", "dgp", "pgdgd"};
    const char *order = chance(&m_random, m_oddness * 0.5) ? pick(&m_random, orders) : "pgd";
    note(QLatin1String(order));
    for (; *order; ++order) {
        if (*order == 'p')
            prepareTick();
        else if (*order == 'g')
            getRawData();
        else
            processData();
        maybeOther();
    }
    if (m_expected.isMyLapReady() && chance(&m_random, 0.7))
        keepLap(m_expected.myCarIdx());
}

void ReaderPair::prepareTick()
{
    m_product.prepareTick();
    m_expected.prepareTick();
}

void ReaderPair::getRawData()
{
    std::size_t t = 0;
    if (chance(&m_random, m_oddness * 0.2)) {
        t = std::size_t(below(&m_random, int(m_tables.size())));
        note(QStringLiteral("table %1").arg(t));
    }
    const Table &table = *m_tables.at(t);
    QByteArray record;
    if (m_recording.recordCount() > 0)
        record = m_recording.record(m_nextRecord++ % m_recording.recordCount());
    record = record.leftJustified(qMax(table.header.bufLen, 0), '\0', true);
    m_product.getRawData(&table.header, table.variables.constData(), record.data());
    m_expected.getRawData(&table.header, table.variables.constData(), record.constData());
}

void ReaderPair::processData()
{
    m_product.processData();
    m_expected.processData();
}

void ReaderPair::compile()
{
    note(QStringLiteral("compileVariables"));
    m_isCompiled = true;
    m_keptLaps.clear();
    m_expectedKeptLaps.clear();
    const Table &table = *m_tables.front();
    m_product.compileVariables(&table.header, table.variables.constData());
}

void ReaderPair::otherOperation()
{
    const int car = anyCar();
    if (car < 0 || chance(&m_random, 0.2)) {
        editSession();
        return;
    }
    switch (below(&m_random, 9)) {
    case 0:
    case 1:
        editSample(car);
        break;
    case 2:
    case 3:
        editLap(car);
        break;
    case 4:
        editChannel(car);
        break;
    case 5:
        editNames(car);
        break;
    case 6:
    case 7:
        finish(car);
        // Without prepareTick() in between, the finished lap is still in its place.
        if (chance(&m_random, 0.3))
            processData();
        break;
    default:
        keepLap(car);
        break;
    }
}

void ReaderPair::editSession()
{
    switch (below(&m_random, 9)) {
    case 0:
    case 1: {
        const bool on = chance(&m_random, 0.7);
        note(QStringLiteral("setDiskLoading(%1)").arg(on));
        m_product.setDiskLoading(on);
        m_expected.setDiskLoading(on);
        break;
    }
    case 2:
        note(QStringLiteral("setYaml of another"));
        m_product.setYaml(m_otherRecording.sessionInfo().constData());
        m_expected.setYaml(m_otherRecording.sessionInfo().constData());
        break;
    case 3:
    case 4:
        note(QStringLiteral("updateCarList"));
        m_product.updateCarList();
        m_expected.updateCarList();
        break;
    case 5: {
        if (!chance(&m_random, 0.2))
            return;
        const int count = pick(&m_random, std::array{64, 10, 100, 0, 1, -3});
        note(QStringLiteral("resize(%1)").arg(count));
        m_product.resize(count);
        m_expected.resize(count);
        break;
    }
    case 6:
        if (m_compiled)
            compile();
        break;
    default: {
        if (m_isCompiled)
            return;
        const QString path =
            pick(&m_random,
                 std::array{
                     QStringLiteral("SessionInfo/Sessions/0/SessionType"),
                     QStringLiteral("DriverInfo/DriverCarIdx"),
                     QStringLiteral("SessionInfo/Sessions/0/ResultsPositions/0/CarIdx"),
                     QStringLiteral("SessionInfo/Sessions/0/ResultsPositions/0/LapsComplete"),
                     QStringLiteral("WeekendInfo/TrackLength"),
                 });
        const QString value =
            chance(&m_random, 0.3) ? QStringLiteral("Race") : QString::number(below(&m_random, 70));
        note(QStringLiteral("pathSet(%1, %2)").arg(path, value));
        m_product.pathSet(path, value);
        m_expected.pathSet(path, value);
        break;
    }
    }
}

void ReaderPair::keepLap(int car)
{
    // Part of the promise: callers do not look at the channels of a lap that is still growing.
    if (m_isCompiled && !m_expected.isLapReady(car))
        return;
    note(QStringLiteral("lap(%1) taken").arg(car));
    m_keptLaps.append(m_product.lap(car));
    m_expectedKeptLaps.append(m_expected.lap(car));
    if (m_keptLaps.size() > KeptLaps) {
        m_keptLaps.removeFirst();
        m_expectedKeptLaps.removeFirst();
    }
}
