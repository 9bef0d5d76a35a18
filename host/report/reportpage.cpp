#include "host/report/reportpage.h"

#include <QCryptographicHash>
#include <QFile>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QStringList>

namespace {

/// A file of the page; empty if the program was built without.
QString part(const QString &name)
{
    QFile file(QLatin1String(":/report/") % name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// How a content security policy names \a text.
QString policySource(const QString &text)
{
    const QByteArray hash = QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha256);
    return QLatin1String(" 'sha256-") % QString::fromLatin1(hash.toBase64()) % QLatin1Char('\'');
}

/// \a page with each file that \a reference refers to in its place, between \a before and \a after;
/// the content security policy of each is appended to \a sources.
QString inlined(const QString &page, const QString &reference, const QString &before,
                const QString &after, QString &sources)
{
    const QRegularExpression expression(reference);
    QString result;
    int taken = 0;
    for (auto match = expression.globalMatch(page); match.hasNext();) {
        const QRegularExpressionMatch found = match.next();
        const QString content = part(found.captured(1));
        sources += policySource(content);
        result += page.midRef(taken, found.capturedStart() - taken) % before % content % after;
        taken = found.capturedEnd();
    }
    return result % page.midRef(taken);
}

/// \a data as text that cannot end the element which it stands in.
QString embeddable(const QJsonObject &data)
{
    QString text = QString::fromUtf8(QJsonDocument(data).toJson(QJsonDocument::Compact));
    return text.replace(QLatin1Char('<'), QLatin1String("\\u003c"));
}

} // namespace

bool hasReportPage()
{
    return QFile::exists(QStringLiteral(":/report/report.html"));
}

QByteArray reportPage(const QString &title, const QJsonObject &data)
{
    QString scripts;
    QString styles;
    QString page = part(QStringLiteral("report.html"));
    page = inlined(page, QStringLiteral("<link rel=\"stylesheet\" href=\"([^\"]+)\">"),
                   QStringLiteral("<style>"), QStringLiteral("</style>"), styles);
    page = inlined(page, QStringLiteral("<script src=\"([^\"]+)\"></script>"),
                   QStringLiteral("<script>"), QStringLiteral("</script>"), scripts);
    // What comes from files goes in last, so that none of it is taken for a place to fill.
    const QString policy = QLatin1String("default-src 'none'; script-src") % scripts
        % QLatin1String("; style-src") % styles
        % QLatin1String("; base-uri 'none'; form-action 'none'");
    const QString dataMark = QStringLiteral("@DATA@");
    const int dataPlace = page.indexOf(dataMark);
    const QString head = page.left(dataPlace)
                             .replace(QLatin1String("@POLICY@"), policy)
                             .replace(QLatin1String("@LICENCE@"),
                                      part(QStringLiteral("uPlot-licence.txt")).toHtmlEscaped())
                             .replace(QLatin1String("@TITLE@"), title.toHtmlEscaped());
    return (head % embeddable(data) % page.midRef(dataPlace + dataMark.size())).toUtf8();
}
