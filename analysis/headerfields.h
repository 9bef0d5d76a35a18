#pragma once

#include "model/lap.h"

#include <QString>
#include <QVariant>
#include <QVector>

/// One fixed field of a lap's header, or a number taken from its channels.
struct HeaderField {
    QString title; ///< for people
    QString key; ///< for scripts
    /// A text (empty if missing), an int, a bool, the lap time as a QTime, or a QDateTime (both
    /// invalid if missing).
    QVariant value;
};

/// The fixed fields of \a lap, in the order in which people read them.
QVector<HeaderField> headerFields(const ZEP::Lap &lap);
