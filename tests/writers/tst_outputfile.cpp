#include "tests/support/roomtests.h"
#include "writers/outputfile.h"

#include <QTest>

class tst_OutputFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void getsItsNameAtTheEnd();
    void isNotReplacedUnasked();
    void isReplacedWhenItIsWhole();
    void isNotReplacedByAFailure();
    void cannotBeOpened_data();
    void cannotBeOpened();
    void device();
    void fullDevice();
    void staysOpenWhenAskedWhetherItIsLost();

private:
    QString file(const char *name) const { return m_dir->filePath(QString::fromLatin1(name)); }
    QByteArray content(const char *name) const;

    std::unique_ptr<QTemporaryDir> m_dir;
};

void tst_OutputFile::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QFile old(file("old.csv"));
    QVERIFY(old.open(QIODevice::WriteOnly));
    QCOMPARE(old.write("old"), 3);
}

QByteArray tst_OutputFile::content(const char *name) const
{
    QFile input(file(name));
    return input.open(QIODevice::ReadOnly) ? input.readAll() : QByteArray("none");
}

void tst_OutputFile::getsItsNameAtTheEnd()
{
    QString problem;
    {
        OutputFile given(file("new.csv"));
        QVERIFY(given.open(false, &problem));
        given.write("whole", 5);
        QVERIFY(!QFile::exists(file("new.csv")));
        QVERIFY(given.commit(&problem));
        QCOMPARE(content("new.csv"), QByteArray("whole"));
    }
    {
        OutputFile dropped(file("dropped.csv"));
        QVERIFY(dropped.open(false, &problem));
        dropped.write("half", 4);
    }
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files | QDir::Hidden),
             (QStringList{"new.csv", "old.csv"}));
    QCOMPARE(problem, QString());
}

void tst_OutputFile::isNotReplacedUnasked()
{
    QString problem;
    QVERIFY(!OutputFile(file("old.csv")).open(false, &problem));
    QCOMPARE(problem,
             QString(file("old.csv")
                     % QLatin1String(
                         ": already exists; choose another name, or use --force to replace it")));
    QCOMPARE(content("old.csv"), QByteArray("old"));
}

void tst_OutputFile::isReplacedWhenItIsWhole()
{
    QString problem;
    OutputFile replaced(file("old.csv"));
    QVERIFY(replaced.open(true, &problem));
    replaced.write("newer", 5);
    QCOMPARE(content("old.csv"), QByteArray("old"));
    QVERIFY(replaced.commit(&problem));
    QCOMPARE(content("old.csv"), QByteArray("newer"));
}

void tst_OutputFile::isNotReplacedByAFailure()
{
    QString problem;
    OutputFile failed(file("old.csv"));
    QVERIFY(failed.open(true, &problem));
    failed.write("half", 4);
    failed.fail(QStringLiteral("the reason"));
    QVERIFY(!failed.isGood());
    failed.write("more", 4);
    QVERIFY(!failed.commit(&problem));
    QCOMPARE(
        problem,
        QString(
            file("old.csv")
            % QLatin1String(
                ": cannot be written (the reason); free some space, or choose another location")));
    QCOMPARE(content("old.csv"), QByteArray("old"));
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files | QDir::Hidden), QStringList{"old.csv"});
}

void tst_OutputFile::cannotBeOpened_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");

    QTest::newRow("folder") << "."
                            << "is a folder; give a file in it";
    QTest::newRow("missing folder")
        << "none/new.csv"
        << "cannot be written (No such file or directory); choose another location";
    QTest::newRow("file as a folder")
        << "old.csv/new.csv"
        << "cannot be written (Not a directory); choose another location";
}

void tst_OutputFile::cannotBeOpened()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    QString problem;
    const QString path = m_dir->filePath(name);
    QVERIFY(!OutputFile(path).open(true, &problem));
    QCOMPARE(problem, QString(path % QLatin1String(": ") % reason));
}

void tst_OutputFile::device()
{
    QString problem;
    OutputFile null(QStringLiteral("/dev/null"));
    QVERIFY(null.open(false, &problem));
    null.write("text", 4);
    QVERIFY(null.commit(&problem));
}

void tst_OutputFile::fullDevice()
{
    QString problem;
    OutputFile full(QStringLiteral("/dev/full"));
    QVERIFY(full.open(false, &problem));
    full.write("text", 4);
    QVERIFY(!full.commit(&problem));
    QCOMPARE(problem,
             QStringLiteral("/dev/full: cannot be written (No space left on device); free some "
                            "space, or choose another location"));
}

void tst_OutputFile::staysOpenWhenAskedWhetherItIsLost()
{
    QFile given(file("new.csv"));
    QVERIFY(given.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    QVERIFY(!OutputFile::isLost(given.handle()));
    QCOMPARE(given.write("more"), 4);
    QVERIFY(!OutputFile::isLost(-1));
}

NAPAMMUL_TEST(tst_OutputFile)
#include "tst_outputfile.moc"
