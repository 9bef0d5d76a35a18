#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

/// True when the program was built with the page; it needs a chart library that a build may lack.
bool hasReportPage();

/// The page with \a title, in UTF-8, that shows \a data. It is one file: styles, scripts and data
/// stand in it, and it allows itself nothing else, neither a request nor any other script.
QByteArray reportPage(const QString &title, const QJsonObject &data);
