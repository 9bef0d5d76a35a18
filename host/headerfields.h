#pragma once

#include "model/lap.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QVector>

/// One fixed field of a lap's header, or what its channels tell.
struct HeaderField {
    QString title;
    QString key; ///< in JSON
    QString text;
    QJsonValue json;
};

/// The fixed fields of \a lap, in the order in which people want to read them.
QVector<HeaderField> headerFields(const ZEP::Lap &lap);

/// Everything about \a lap but its channels: an object "header" of headerFields(), and objects
/// "values" and "calculatedValues" of jsonValue() by name.
QJsonObject headerJson(const ZEP::Lap &lap);
