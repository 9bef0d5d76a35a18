#include "tests/support/processlimit.h"
#include "tests/support/racesheet.h"
#include "tests/support/roomtests.h"
#include "tests/support/zepimportprocess.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTest>

/// What commands print for scripts is what docs/json.md and the schemas beside it promise.
class tst_JsonSchemas : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everySchemaHasOutput();
    void outputFits_data();
    void outputFits();
    void differenceIsFound_data();
    void differenceIsFound();
    void everyKeyIsExplained_data();
    void everyKeyIsExplained();

private:
    void write(const QString &name, const QByteArray &content) const;
    QByteArray output(const QStringList &arguments) const;
    QString problem(const QString &schema, const QByteArray &json) const;

    QTemporaryDir m_dir;
};

namespace {

/// The folder of the schemas.
QString schemas()
{
    return QFileInfo(QFINDTESTDATA("../../../docs/schemas/laps.json")).path();
}

/// The names of the files in it, sorted.
QStringList schemaFiles()
{
    return QDir(schemas()).entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Name);
}

/// A command line, and the schema that its output has to fit.
struct CheckedOutput {
    const char *name;
    QString schema;
    QStringList arguments;
};

QVector<CheckedOutput> checkedOutputs()
{
    const QStringList files{"demo.ibt", "race.laps", "odd.laps"};
    const QStringList json{"export", "--format", "json"};
    return {
        {"laps", "laps", QStringList{"laps", "--json"} + files},
        {"laps in processes", "laps", QStringList{"laps", "--json", "--jobs", "2"} + files},
        {"laps --best", "laps-best", QStringList{"laps", "--best", "--json"} + files},
        {"info", "info", QStringList{"info", "--json", "--lap", "all"} + files},
        {"channels", "channels", QStringList{"channels", "--json", "--lap", "all"} + files},
        {"compare", "compare", {"compare", "--json", "--grid", "10", "demo.ibt:2", "demo.ibt:3"}},
        {"check", "check", {"check", "--json", ".", "missing.ibt"}},
        {"formats", "formats", {"formats", "--json"}},
        // All channels of a recording would keep the validator busy for a minute.
        {"export, a recording", "export",
         json + QStringList{"demo.ibt", "--channels", "driver", "-"}},
        {"export, race.laps", "export", json + QStringList{"race.laps", "-"}},
        {"export, odd.laps", "export", json + QStringList{"odd.laps", "-"}},
    };
}

/// The names of all properties that \a schema describes.
void addKeys(const QJsonValue &schema, QSet<QString> *keys)
{
    if (schema.isArray()) {
        for (const QJsonValue &element : schema.toArray())
            addKeys(element, keys);
    }
    const QJsonObject object = schema.toObject();
    const QStringList properties = object.value(QStringLiteral("properties")).toObject().keys();
    keys->unite(QSet<QString>(properties.begin(), properties.end()));
    for (const QJsonValue &part : object)
        addKeys(part, keys);
}

} // namespace

void tst_JsonSchemas::initTestCase()
{
    QVERIFY(QFile::exists(schemas() % QLatin1String("/laps.json")));
    QFile docs(schemas() % QLatin1String("/../json.md"));
    QVERIFY(docs.open(QIODevice::ReadOnly));
    const QRegularExpression link(QStringLiteral("^\\|.*\\(schemas/(.+\\.json)\\)"),
                                  QRegularExpression::MultilineOption);
    QStringList listed;
    for (auto match = link.globalMatch(QString::fromUtf8(docs.readAll())); match.hasNext();)
        listed.append(match.next().captured(1));
    listed.sort();
    // The table of docs/json.md, and the files in docs/schemas/.
    QCOMPARE(listed.join(QLatin1Char(' ')), schemaFiles().join(QLatin1Char(' ')));

    QProcess generator;
    generator.start(
        QStringLiteral(IBTGEN_PATH),
        {"--laps", "2", "--rate", "15", "--seed", "5", m_dir.filePath(QStringLiteral("demo.ibt"))});
    QVERIFY(generator.waitForFinished(ProcessLimit));
    QCOMPARE(generator.exitCode(), 0);
    QFile demo(m_dir.filePath(QStringLiteral("demo.ibt")));
    QVERIFY(demo.open(QIODevice::ReadOnly));
    const QByteArray whole = demo.readAll();
    write(QStringLiteral("cut.ibt"), whole.left(whole.size() * 3 / 4));
    write(QStringLiteral("text.ibt"), "no recording");
    write(QStringLiteral("race.laps"), raceSheet());
    write(QStringLiteral("odd.laps"),
          "lap|0|1||1|1|0\nnumber|Depth|-inf|m\nnumber|Height|inf|m\n"
          "number|Width|nan|m\nchannel|speed|m/s|-inf -inf\nchannel|none||-\n"
          "channel|gear||1 -inf - nan inf 3\ncalculated|twice||2 4\n");
}

void tst_JsonSchemas::write(const QString &name, const QByteArray &content) const
{
    QFile file(m_dir.filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

QByteArray tst_JsonSchemas::output(const QStringList &arguments) const
{
    ZepimportProcess process;
    process.arguments = arguments;
    process.environment.append(
        QStringLiteral("ZEP_PLUGIN_PATH=" LAPSHEET_PLUGIN_PATH ":" NAPAMMUL_PLUGIN_PATH));
    process.folder = m_dir.path();
    return process.run().output.toUtf8();
}

QString tst_JsonSchemas::problem(const QString &schema, const QByteArray &json) const
{
    write(QStringLiteral("output.json"), json);
    QProcess python;
    python.start(QStringLiteral(PYTHON_PATH),
                 {QFINDTESTDATA("validate.py"),
                  schemas() % QLatin1Char('/') % schema % QLatin1String(".json"),
                  m_dir.filePath(QStringLiteral("output.json"))});
    if (!python.waitForFinished(ProcessLimit) || python.exitStatus() != QProcess::NormalExit)
        return QStringLiteral("Python did not end by itself");
    const QString errors = QString::fromUtf8(python.readAllStandardError());
    return python.exitCode() != 0 && errors.isEmpty() ? QStringLiteral("Python says nothing")
                                                      : errors;
}

void tst_JsonSchemas::everySchemaHasOutput()
{
    QStringList unchecked = schemaFiles();
    for (const CheckedOutput &checked : checkedOutputs())
        unchecked.removeAll(checked.schema % QLatin1String(".json"));
    // Each needs a line in checkedOutputs().
    QCOMPARE(unchecked.join(QLatin1Char(' ')), QString());
}

void tst_JsonSchemas::outputFits_data()
{
    QTest::addColumn<QString>("schema");
    QTest::addColumn<QStringList>("arguments");

    for (const CheckedOutput &checked : checkedOutputs())
        QTest::newRow(checked.name) << checked.schema << checked.arguments;
}

void tst_JsonSchemas::outputFits()
{
    QFETCH(QString, schema);
    QFETCH(QStringList, arguments);
    QCOMPARE(problem(schema, output(arguments)), QString());
}

void tst_JsonSchemas::differenceIsFound_data()
{
    QTest::addColumn<QByteArray>("from");
    QTest::addColumn<QByteArray>("to");

    QTest::newRow("no key") << QByteArray("\"stint\": 1,") << QByteArray();
    QTest::newRow("another key") << QByteArray("\"stint\"") << QByteArray("\"run\"");
    QTest::newRow("a further key")
        << QByteArray("\"stint\"") << QByteArray("\"run\": 1, \"stint\"");
    QTest::newRow("another type") << QByteArray("\"stint\": 1") << QByteArray("\"stint\": \"1\"");
    QTest::newRow("a number that not every parser reads")
        << QByteArray("\"gap\": 0.5") << QByteArray("\"gap\": -1e999");
    QTest::newRow("what is not JSON") << QByteArray("\"gap\": 0.5") << QByteArray("\"gap\": NaN");
    QTest::newRow("another word") << QByteArray("out-lap") << QByteArray("outlap");
}

void tst_JsonSchemas::differenceIsFound()
{
    QFETCH(QByteArray, from);
    QFETCH(QByteArray, to);
    QByteArray json = output({"laps", "--json", "race.laps"});
    const int place = json.indexOf(from);
    QVERIFY2(place > 0, json.constData());
    QVERIFY(problem(QStringLiteral("laps"), json.replace(place, from.size(), to))
                .startsWith(QLatin1String("validate.py: ")));
}

void tst_JsonSchemas::everyKeyIsExplained_data()
{
    QTest::addColumn<QString>("schema");
    for (const QString &file : schemaFiles())
        QTest::newRow(qPrintable(file)) << file;
}

void tst_JsonSchemas::everyKeyIsExplained()
{
    QFETCH(QString, schema);
    QFile docs(schemas() % QLatin1String("/../json.md"));
    QFile file(schemas() % QLatin1Char('/') % schema);
    QVERIFY(docs.open(QIODevice::ReadOnly) && file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(docs.readAll());
    QVERIFY2(text.contains(QLatin1String("(schemas/") % schema % QLatin1Char(')')),
             qPrintable(schema));
    QSet<QString> keys;
    addKeys(QJsonDocument::fromJson(file.readAll()).object(), &keys);
    QVERIFY(!keys.isEmpty());
    for (const QString &key : qAsConst(keys))
        QVERIFY2(text.contains(QLatin1Char('`') % key % QLatin1Char('`')), qPrintable(key));
}

NAPAMMUL_TEST(tst_JsonSchemas)
#include "tst_jsonschemas.moc"
