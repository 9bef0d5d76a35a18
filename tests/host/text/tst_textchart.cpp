#include "host/text/textchart.h"
#include "host/text/textwidth.h"
#include "tests/support/roomtests.h"

#include <QTest>

class tst_TextChart : public QObject
{
    Q_OBJECT

private slots:
    void draws_data();
    void draws();
    void laterCurvesLieAbove();
    void withoutColoursNamesRemain();
    void wildValuesAreLeftOut_data();
    void wildValuesAreLeftOut();
    void longEndFitsTheAxis();
};

namespace {

constexpr int Width = 24;
constexpr int Height = 6;

QString chart(const QVector<TextChart::Curve> &curves, bool colour)
{
    return TextChart(400, QStringLiteral("m"))
        .text(QStringLiteral("Time, s"), curves, Width, Height, colour);
}

} // namespace

void tst_TextChart::draws_data()
{
    QTest::addColumn<QVector<double>>("values");
    QTest::addColumn<QString>("text");

    QTest::newRow("rise") << QVector<double>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10} << QStringLiteral(R"(
10.00 ┤           ⣀⣠⠤⠴⠒⠋
      │      ⣀⣰⠒⠚⠉⠁
 0.00 ┤⣀⡤⠴⠒⠚⠉⠁
      └─────────────────
       0           400 m
)");
    QTest::newRow("flat line") << QVector<double>{5, 5} << QStringLiteral(R"(
6.00 ┤
     │
5.00 ┤⣀⣀⣀⣀⣀⣀⣀⣀⣀⣀⣀⣀⣀⣀⣀⣀⣀⣀
     └──────────────────
      0            400 m
)");
    QTest::newRow("through zero") << QVector<double>{-1, -0.5, 0, 0.5, 1} << QStringLiteral(R"(
 1.00 ┤          ⢀⣀⣀⣀⣸⠉⠉
    0 ┤┈┈┈┈┈┈⢰⠒⠒⠒⠚┈┈┈┈┈┈
-1.00 ┤⣀⣀⣸⠉⠉⠉⠉
      └─────────────────
       0           400 m
)");
    QTest::newRow("below zero, with jumps") << QVector<double>{-1, -3, -2} << QStringLiteral(R"(
-1.00 ┤⠉⠉⠉⠉⢹
      │    ⢸       ⢰⠒⠒⠒⠒
-3.00 ┤    ⢸⣀⣀⣀⣀⣀⣀⣀⣸
      └─────────────────
       0           400 m
)");
}

void tst_TextChart::draws()
{
    QFETCH(QVector<double>, values);
    QFETCH(QString, text);

    QCOMPARE(chart({{QString(), values, TextChart::Colour::Default}}, false),
             QStringLiteral("Time, s") + text);
}

void tst_TextChart::laterCurvesLieAbove()
{
    const QString text = chart({{QStringLiteral("A"), {2, 2}, TextChart::Colour::Cyan},
                                {QStringLiteral("B"), {1, 2}, TextChart::Colour::Yellow}},
                               true);
    const QStringList lines = text.split(QLatin1Char('\n'));
    QCOMPARE(lines.at(0), QStringLiteral("Time, s  \033[36m━━ A\033[0m  \033[33m━━ B\033[0m"));
    QCOMPARE(lines.at(1), QStringLiteral("2.00 ┤\033[36m⠉⠉⠉⠉⠉⠉⠉⠉⠉\033[0m\033[33m⡏⠉⠉⠉⠉⠉⠉⠉⠉\033[0m"));
}

void tst_TextChart::withoutColoursNamesRemain()
{
    const QString text = chart({{QStringLiteral("A"), {2, 2}, TextChart::Colour::Cyan}}, false);
    QCOMPARE(text.section(QLatin1Char('\n'), 0, 0), QStringLiteral("Time, s  ━━ A"));
    QVERIFY(!text.contains(QLatin1Char('\033')));
}

void tst_TextChart::wildValuesAreLeftOut_data()
{
    QTest::addColumn<QVector<double>>("values");

    QTest::newRow("no number") << QVector<double>{1, qQNaN(), 2};
    QTest::newRow("no number first") << QVector<double>{qQNaN(), 1, 2};
    QTest::newRow("infinite") << QVector<double>{-qInf(), 1, qInf()};
    QTest::newRow("a range that no double holds") << QVector<double>{-1.7e308, 0, 1.7e308};
    QTest::newRow("labels of many digits") << QVector<double>{-9.9e23, 9.9e23};
}

void tst_TextChart::wildValuesAreLeftOut()
{
    QFETCH(QVector<double>, values);

    const QString text =
        TextChart(1e300, QStringLiteral("m"))
            .text(QStringLiteral("Time, s"), {{QString(), values, TextChart::Colour::Default}},
                  TextChart::LeastWidth, TextChart::LeastHeight, false);
    QCOMPARE(text.count(QLatin1Char('\n')), TextChart::LeastHeight);
}

void tst_TextChart::longEndFitsTheAxis()
{
    TextChart::Curve curve;
    curve.values = {-9.9e23, 9.9e23};
    const QStringList lines = TextChart(1.23456e+300, QStringLiteral("m"))
                                  .text(QStringLiteral("Title"), {curve}, TextChart::LeastWidth,
                                        TextChart::LeastHeight, false)
                                  .split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), TextChart::LeastHeight + 1);
    for (const QString &line : lines)
        QVERIFY2(displayWidth(line) <= TextChart::LeastWidth, qPrintable(line));
}

NAPAMMUL_TEST(tst_TextChart)
#include "tst_textchart.moc"
