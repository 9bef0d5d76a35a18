#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

/// True when the program was built with the page, which needs npm packages that a build may lack.
bool hasReportPage();

/// The page with \a title, in UTF-8, that shows \a data; only where there is a page. It is one file
/// that contains styles, scripts and data. Its content security policy allows nothing else: no
/// request, and no other script.
QByteArray reportPage(const QString &title, const QJsonObject &data);
