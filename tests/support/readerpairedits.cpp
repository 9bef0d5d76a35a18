// Changes that callers may make to samples, laps and names between the steps of a tick.
#include "tests/support/readerpair.h"

#include "tests/support/randomdrive.h"

void ReaderPair::editSample(int car)
{
    ZEP::Sample &sample = m_product.sample(car);
    reference::Sample &expected = m_expected.sample(car);
    const QString name = anyName();
    switch (below(&m_random, 8)) {
    case 0:
        note(QStringLiteral("sample(%1) asked").arg(car));
        break;
    case 1:
        note(QStringLiteral("sample(%1) cleared").arg(car));
        sample.clear();
        expected.values.clear();
        break;
    case 2:
    case 3:
        note(QStringLiteral("sample(%1) loses %2").arg(car).arg(name));
        sample.removeValue(name);
        expected.values.remove(name);
        break;
    default: {
        const QVariant value = anyValue();
        note(QStringLiteral("sample(%1) gets %2").arg(car).arg(name));
        sample.addValue(name, value, QStringLiteral("u"));
        expected.values.insert(name, {value, QStringLiteral("u")});
        break;
    }
    }
}

void ReaderPair::editLap(int car)
{
    ZEP::Lap &lap = m_product.lap(car);
    reference::Lap &expected = m_expected.lap(car);
    const QString name = anyName();
    const int operation = below(&m_random, 10);
    note(QStringLiteral("lap(%1) edit %2 %3").arg(car).arg(operation).arg(name));
    switch (operation) {
    case 0:
        lap.clear();
        expected.clear();
        break;
    case 1:
        lap.removeChannel(name);
        expected.channels.remove(name);
        break;
    case 2:
        lap.addChannel(new ZEP::Channel, name);
        expected.addChannel(name, {});
        break;
    case 3:
        lap.addCalculatedChannel(new ZEP::Channel, name);
        expected.calculatedChannels.insert(name, QSharedPointer<reference::Channel>::create());
        break;
    case 4: {
        const QVariant value = anyValue();
        lap.setCalculatedValue(name, value, QString());
        expected.calculatedValues.insert(name, {value, QString()});
        break;
    }
    case 5:
        lap.removeCalculatedValue(name);
        expected.calculatedValues.remove(name);
        break;
    case 6: {
        const QVariant value = anyValue();
        lap.addValue(name, value, QStringLiteral("v"));
        expected.values.insert(name, {value, QStringLiteral("v")});
        break;
    }
    case 7:
        lap.setLapType(ZEP::LapType(below(&m_random, 3) - 1));
        expected.lapType = int(lap.getLapType());
        break;
    case 8:
        lap.addSample(m_product.sample(car));
        expected.addSample(m_expected.sample(car));
        break;
    default:
        lap.DynamicData::clear();
        expected.values.clear();
        break;
    }
}

void ReaderPair::editChannel(int car)
{
    ZEP::Lap &lap = m_product.lap(car);
    const QStringList names = m_expected.lap(car).channels.keys();
    if (names.isEmpty())
        return;
    const QString name = names.at(below(&m_random, names.size()));
    note(QStringLiteral("lap(%1) channel %2").arg(car).arg(name));
    const QSharedPointer<ZEP::Channel> channel = lap.channel(name);
    const QSharedPointer<reference::Channel> expected = m_expected.lap(car).channel(name);
    if (!channel)
        return;
    switch (below(&m_random, 4)) {
    case 0:
        channel->setUnit(QStringLiteral("%"));
        expected->unit = QStringLiteral("%");
        break;
    case 1:
        channel->data.append(1.5);
        expected->data.append(1.5);
        break;
    case 2:
        channel->data.clear();
        expected->data.clear();
        break;
    default: {
        const int index = below(&m_random, 20);
        channel->setSample(index, -1.0);
        expected->setSample(index, -1.0);
        break;
    }
    }
}

void ReaderPair::editNames(int car)
{
    const QString name = chance(&m_random, 0.3) ? QString() : QStringLiteral("Someone");
    note(QStringLiteral("names(%1) \"%2\"").arg(car).arg(name));
    if (chance(&m_random, 0.7)) {
        m_product.driverName(car) = name;
        m_expected.driverName(car) = name;
    } else {
        m_product.teamName(car) = name;
        m_expected.teamName(car) = name;
    }
    const int anyIndex = below(&m_random, 130) - 32;
    m_product.setCarActive(anyIndex, name.isNull());
    m_expected.setCarActive(anyIndex, name.isNull());
}

void ReaderPair::finish(int car)
{
    const bool completed = chance(&m_random, 0.5);
    const int operation = below(&m_random, 7);
    note(QStringLiteral("finish(%1) %2").arg(car).arg(operation));
    switch (operation) {
    case 0:
    case 1:
        m_product.processLap(car, completed);
        m_expected.processLap(car, completed);
        break;
    case 2:
        m_product.processMyLap(completed);
        m_expected.processMyLap(completed);
        break;
    case 3:
        m_product.getSessionInfo(car, &m_product.lap(car));
        m_expected.getSessionInfo(car, &m_expected.lap(car));
        break;
    case 4:
        m_product.cleanupLap(car);
        m_expected.cleanupLap(car);
        break;
    case 5:
        m_product.preprocessLap(car);
        m_expected.preprocessLap(car);
        break;
    default: {
        const QString name = chance(&m_random, 0.5) ? QStringLiteral("lapcurrentlaptime")
                                                    : QStringLiteral("energybatterytomgu_klap");
        m_product.normalizeChannelBeginning(car, name);
        m_expected.normalizeChannelBeginning(car, name);
        break;
    }
    }
}
