// The names and meanings of kinds of findings, and the page that lists them.

#include "inspect/findingkind.h"
#include "tests/support/roomtests.h"

#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

Q_DECLARE_METATYPE(FindingKind)

namespace {

/// The rows of the table of kinds in docs/check.md, without markup: meanings by names.
QMap<QString, QString> documentedKinds()
{
    QFile page(QFINDTESTDATA("../../docs/check.md"));
    if (!page.open(QIODevice::ReadOnly))
        return {};
    const QString table = QString::fromUtf8(page.readAll()).section(QLatin1String("| kind |"), 1);
    const QRegularExpression row(QStringLiteral("^\\| `([^`]*)` \\| (.*) \\|$"),
                                 QRegularExpression::MultilineOption);
    const QRegularExpression link(QStringLiteral("\\[([^\\]]*)\\]\\([^)]*\\)"));
    QMap<QString, QString> kinds;
    for (auto rows = row.globalMatch(table); rows.hasNext();) {
        const QRegularExpressionMatch match = rows.next();
        kinds.insert(match.captured(1),
                     match.captured(2).replace(link, QStringLiteral("\\1")).remove('`'));
    }
    return kinds;
}

} // namespace

class tst_FindingKind : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesAreForScripts();
    void documented_data();
    void documented();
    void documentsNoOthers();
};

void tst_FindingKind::namesAreForScripts()
{
    const QRegularExpression name(QStringLiteral("^[a-z]+(-[a-z]+)*$"));
    QSet<QString> names;
    for (int kind = 0; kind < FindingKindCount; ++kind) {
        names.insert(findingKindName(FindingKind(kind)));
        QVERIFY2(name.match(findingKindName(FindingKind(kind))).hasMatch(),
                 qPrintable(findingKindName(FindingKind(kind))));
    }
    QCOMPARE(names.size(), FindingKindCount);
}

void tst_FindingKind::documented_data()
{
    QTest::addColumn<FindingKind>("kind");
    for (int kind = 0; kind < FindingKindCount; ++kind)
        QTest::addRow("%s", qPrintable(findingKindName(FindingKind(kind)))) << FindingKind(kind);
}

void tst_FindingKind::documented()
{
    QFETCH(FindingKind, kind);
    QCOMPARE(documentedKinds().value(findingKindName(kind)), findingKindMeaning(kind));
}

void tst_FindingKind::documentsNoOthers()
{
    QCOMPARE(documentedKinds().size(), FindingKindCount);
}

NAPAMMUL_TEST(tst_FindingKind)
#include "tst_findingkind.moc"
