#include "tests/support/roomtests.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QVector>

namespace {

/// A row of the table of rooms.
struct Room {
    QStringList folders; ///< "model/"
    QStringList mayInclude; ///< wildcards of paths: "model/*", "plugin/zep*"
    bool mayIncludeAnything = false;

    bool allows(const QString &path) const
    {
        const auto fits = [&path](const QString &wildcard) {
            return QRegularExpression(QRegularExpression::wildcardToRegularExpression(
                                          QString(wildcard).replace(QLatin1Char('/'), '|')))
                .match(QString(path).replace(QLatin1Char('/'), '|')) // wildcards stop at slashes
                .hasMatch();
        };
        return mayIncludeAnything || std::any_of(mayInclude.begin(), mayInclude.end(), fits);
    }
};

/// What stands between backticks in \a cell.
QStringList quoted(const QString &cell)
{
    static const QRegularExpression code(QStringLiteral("`([^`]+)`"));
    QStringList result;
    for (auto match = code.globalMatch(cell); match.hasNext();)
        result.append(match.next().captured(1));
    return result;
}

} // namespace

/// Holds what the sources include against the table of rooms in docs/architecture.md.
class tst_Rooms : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void tableHasNoCircle();
    void everySourceIsInARoom();
    void noArrowRunsUp();
    void noFilesIncludeEachOther();
    void everyIncludedFileExists();

private:
    int roomOf(const QString &path) const;

    QDir m_root;
    QVector<Room> m_rooms;
    QMap<QString, QStringList> m_includes; ///< by source, both from the root
};

void tst_Rooms::initTestCase()
{
    QFile page(QFINDTESTDATA("../../docs/architecture.md"));
    QVERIFY(page.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(page.readAll());
    const QStringList lines =
        text.section(QLatin1String("| room |"), 1).split(QLatin1Char('\n')).mid(2);
    for (const QString &line : lines) {
        if (!line.startsWith(QLatin1Char('|')))
            break;
        const QString rule = line.section(QLatin1Char('|'), 3, 3);
        Room room;
        room.folders = quoted(line.section(QLatin1Char('|'), 1, 1));
        for (const QString &path : quoted(rule))
            room.mayInclude.append(path.endsWith(QLatin1Char('/')) ? path + QLatin1Char('*')
                                                                   : path);
        room.mayIncludeAnything = rule.contains(QLatin1String("anything"));
        m_rooms.append(room);
    }
    QVERIFY(m_rooms.size() > 10);

    m_root.setPath(QFileInfo(page.fileName()).dir().absoluteFilePath(QStringLiteral("..")));
    static const QRegularExpression include(QStringLiteral("^#include \"([^\"]+)\"$"),
                                            QRegularExpression::MultilineOption);
    for (const QString &top : m_root.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (top == QLatin1String("build"))
            continue;
        QDirIterator files(m_root.filePath(top), {"*.h", "*.cpp"}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            QVERIFY(file.open(QIODevice::ReadOnly));
            QStringList &included = m_includes[m_root.relativeFilePath(file.fileName())];
            const QString source = QString::fromUtf8(file.readAll());
            for (auto match = include.globalMatch(source); match.hasNext();)
                included.append(match.next().captured(1));
        }
    }
    QVERIFY(m_includes.contains(QStringLiteral("model/lap.cpp")));
}

/// The room with the deepest folder that \a path lies in; -1 if it lies in none.
int tst_Rooms::roomOf(const QString &path) const
{
    int found = -1;
    int depth = 0;
    for (int i = 0; i < m_rooms.size(); ++i) {
        for (const QString &folder : m_rooms.at(i).folders) {
            if (folder.size() > depth && path.startsWith(folder)) {
                found = i;
                depth = folder.size();
            }
        }
    }
    return found;
}

/// Every room stands below those that it may include, so no way leads back.
void tst_Rooms::tableHasNoCircle()
{
    for (int i = 0; i < m_rooms.size(); ++i) {
        for (const QString &path : m_rooms.at(i).mayInclude) {
            const int other = roomOf(path);
            QVERIFY2(other >= 0, qPrintable(path + QLatin1String(" is no room")));
            // "host/*" includes the rooms in it; those stand above it, too.
            QVERIFY2(other <= i,
                     qPrintable(m_rooms.at(i).folders.first() + QLatin1String(" may not include ")
                                + path + QLatin1String(", which stands below it")));
        }
    }
}

void tst_Rooms::everySourceIsInARoom()
{
    for (auto source = m_includes.cbegin(); source != m_includes.cend(); ++source)
        QVERIFY2(roomOf(source.key()) >= 0, qPrintable(source.key()));
}

void tst_Rooms::noArrowRunsUp()
{
    QStringList wrong;
    for (auto source = m_includes.cbegin(); source != m_includes.cend(); ++source) {
        const int from = roomOf(source.key());
        for (const QString &path : source.value()) {
            if (path.endsWith(QLatin1String(".moc")) || roomOf(path) == from)
                continue;
            if (from < 0 || !m_rooms.at(from).allows(path))
                wrong.append(source.key() + QLatin1String(" includes ") + path);
        }
    }
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QLatin1Char('\n'))));
}

/// Within a room, too: `#pragma once` would hide that two headers need each other.
void tst_Rooms::noFilesIncludeEachOther()
{
    QMap<QString, QStringList> left;
    for (auto source = m_includes.cbegin(); source != m_includes.cend(); ++source) {
        if (source.key().endsWith(QLatin1String(".h")))
            left.insert(source.key(), source.value());
    }
    // Takes away what includes nothing that is left, until all is gone or in a circle.
    for (bool isLess = true; isLess;) {
        isLess = false;
        for (auto header = left.begin(); header != left.end();) {
            const bool isFree =
                std::none_of(header->cbegin(), header->cend(),
                             [&left](const QString &path) { return left.contains(path); });
            isLess = isLess || isFree;
            header = isFree ? left.erase(header) : std::next(header);
        }
    }
    QVERIFY2(left.isEmpty(), qPrintable(QStringList(left.keys()).join(QLatin1Char('\n'))));
}

/// From the root, as every include is written.
void tst_Rooms::everyIncludedFileExists()
{
    const QStringList generated{QStringLiteral("plugin/zepiidprefix.h")};
    for (auto source = m_includes.cbegin(); source != m_includes.cend(); ++source) {
        for (const QString &path : source.value()) {
            if (path.endsWith(QLatin1String(".moc")) || generated.contains(path))
                continue;
            QVERIFY2(m_includes.contains(path),
                     qPrintable(source.key() + QLatin1String(" includes ") + path));
        }
    }
}

NAPAMMUL_TEST(tst_Rooms)

#include "tst_rooms.moc"
