#include "host/report/reportpage.h"

#include <QFile>
#include <QJsonDocument>

namespace {

/// Made by host/report/page/build.js, which sees to it that each mark is in it once.
QString pageFile()
{
    return QStringLiteral(":/report/report.html");
}

/// \a data as text that cannot end the element that contains it.
QByteArray embeddable(const QJsonObject &data)
{
    // Not replaced in place: that would move the rest of a long text again and again.
    const QByteArray json = QJsonDocument(data).toJson(QJsonDocument::Compact);
    const QByteArray escaped = "\\u003c";
    QByteArray text;
    text.reserve(json.size() + json.count('<') * (escaped.size() - 1));
    for (const char c : json) {
        if (c == '<')
            text += escaped;
        else
            text += c;
    }
    return text;
}

} // namespace

bool hasReportPage()
{
    return QFile::exists(pageFile());
}

QByteArray reportPage(const QString &title, const QJsonObject &data)
{
    const QByteArray titleMark = "@TITLE@";
    const QByteArray dataMark = "@DATA@";
    QFile file(pageFile());
    if (!file.open(QIODevice::ReadOnly))
        qFatal("There is no page; ask hasReportPage() first.");
    const QByteArray page = file.readAll();
    // Both places are found before anything is put in: texts of recordings may look like marks.
    const int titlePlace = page.indexOf(titleMark);
    const int dataPlace = page.indexOf(dataMark);
    Q_ASSERT(titlePlace >= 0 && dataPlace > titlePlace);
    const int titleEnd = titlePlace + titleMark.size();
    return page.left(titlePlace) % title.toHtmlEscaped().toUtf8()
        % page.mid(titleEnd, dataPlace - titleEnd) % embeddable(data)
        % page.mid(dataPlace + dataMark.size());
}
