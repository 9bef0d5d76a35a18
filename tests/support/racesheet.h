#pragma once

#include <QByteArray>
#include <QString>

/// A lap sheet with one lap of each kind.
inline QByteArray raceSheet()
{
    return R"(message|0|Reading the sheet
lap|0|1|3599000|0|1|0
channel|speed|m/s|0 10 20.5
channel|fuellevel|l|50 - 49.5
lap|1|1|65623|1|1|1
channel|speed|m/s|30 41.26 - 20
lap|1|1|65123|2|1|2
track|Lakeside
configuration| Short circuit
car|Formula Junior
driver|Zoë Ångström
session|5
date|2024-05-31T18:30:00
number|Air temperature|21.5|C
number|Maximum fuel level|50|l
text|Club|
colour|Licence color|#ff0080
channel|dead|C|- - -
channel|fuellevel|l|48 47 45.999
channel|gear||1 2 5
channel|speed|m/s|31 42 -
calculated|lapdist|m|0 10.25 20.5
lap|-1|1|70000|4|1|4
channel|gear||1
lap|1|0|3599000|5|1|5
channel|gear||1 2
lap|-1|0||6|2|0
)";
}

/// What `zepimport laps race.laps` prints for it.
inline QString raceTable()
{
    return QStringLiteral(
        R"(race.laps
Track          Lakeside
Configuration  Short circuit
Car            Formula Junior
Driver         Zoë Ångström
Session        race
Date           2024-05-31 18:30:00

#  Lap  Stint  In stint  Kind            Time     Gap  Samples  Top speed  Fuel used
1    0      1         0  out-lap            -       -        3   20.5 m/s     0.50 l
2    1      1         1  timed       1:05.623  +0.500        4   41.3 m/s          -
3    2      1         2  timed       1:05.123    best        3   42.0 m/s     2.00 l
4    4      1         4  other       1:10.000  +4.877        1          -          -
5    5      1         5  unfinished         -       -        2          -          -
6    6      2         0  empty              -       -        0          -          -
)");
}
