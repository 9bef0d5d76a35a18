#pragma once

#include "analysis/lapsummary.h"
#include "analysis/sessionsummary.h"
#include "model/lap.h"

#include <QJsonObject>

/// Where, in what, by whom and when: texts are null where they are not known.
QJsonObject sessionJson(const SessionSummary &session);

/// One row of a table of laps, without the lap's #: the place of \a lap in its session, and its
/// \a summary.
QJsonObject lapSummaryJson(const ZEP::Lap &lap, const LapSummary &summary);
