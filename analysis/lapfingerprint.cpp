#include "analysis/lapfingerprint.h"

#include "model/channel.h"

#include <QCryptographicHash>
#include <QVariant>
#include <QVector>

namespace {

void add(QCryptographicHash *hash, const QString &text)
{
    hash->addData(text.toUtf8());
    hash->addData("\0", 1);
}

} // namespace

QByteArray fingerprint(const Laps &laps)
{
    QCryptographicHash hash(QCryptographicHash::Md4); // the fastest one
    for (const auto &lap : laps) {
        for (const QVariant &value : QVector<QVariant>{
                 lap->getTrackName(), lap->getTrackConfig(), lap->getCarName(),
                 lap->getDriverName(), lap->getSessionId(), lap->getCarId(), int(lap->getSession()),
                 int(lap->getLapType()), lap->getLapTime(), lap->getLapInSession(),
                 lap->getLapInStint(), lap->getStintInSession(), lap->getCompleted()})
            add(&hash, value.toString());
        for (const QString &name : lap->valueNameList()) {
            add(&hash, name);
            add(&hash, lap->value(name).print());
        }
        for (const QString &name : lap->getAvailableChannels()) {
            const QSharedPointer<ZEP::Channel> channel = lap->channel(name);
            add(&hash, name);
            add(&hash, channel->unit());
            hash.addData(reinterpret_cast<const char *>(channel->data.constData()),
                         channel->data.size() * int(sizeof(double)));
        }
    }
    return hash.result();
}
