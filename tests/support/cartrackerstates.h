// States of a car for tests, and what differs between two of them.
#pragma once

#include "reader/cartracker.h"

#include <QString>
#include <QUuid>

/// A sample of one value.
inline ZEP::Sample sampleOf(const QString &name, double value)
{
    ZEP::Sample sample;
    sample.addValue(name, value, QStringLiteral("m"));
    return sample;
}

/// A state in which no field has its initial value.
inline CarTrackerSample filledState()
{
    CarTrackerSample state;
    state.lapId = QUuid::createUuid();
    state.stintId = QUuid::createUuid();
    state.text = "text";
    state.lap = 11;
    state.lapInStint = 12;
    state.stintCount = 13;
    state.spareInt1 = 14;
    state.lapDistPct = 0.15f;
    state.lapCurrentLapTime = 16.5f;
    state.lapLastLapTime = 17.5f;
    state.spareInt2 = 18;
    state.spareInt3 = 19;
    state.sessionState = 4;
    state.carStatus = 6;
    state.sessionType = 5;
    state.lapCompleted = true;
    state.spareFlag1 = true;
    state.completionHold = true;
    state.spareFlag2 = true;
    state.spare64 = Q_INT64_C(0x123456789abcdef);
    return state;
}

/// The first field that differs; empty if none does.
inline QString difference(const CarTrackerSample &actual, const CarTrackerSample &expected)
{
#define FIELD(field)                                                                               \
    if (actual.field != expected.field)                                                            \
    return QStringLiteral(#field)
    FIELD(lapId);
    FIELD(stintId);
    FIELD(text);
    FIELD(lap);
    FIELD(lapInStint);
    FIELD(stintCount);
    FIELD(spareInt1);
    FIELD(lapDistPct);
    FIELD(lapCurrentLapTime);
    FIELD(lapLastLapTime);
    FIELD(spareInt2);
    FIELD(spareInt3);
    FIELD(sessionState);
    FIELD(carStatus);
    FIELD(sessionType);
    FIELD(lapCompleted);
    FIELD(spareFlag1);
    FIELD(completionHold);
    FIELD(spareFlag2);
    FIELD(spare64);
#undef FIELD
    return QString();
}
