// Input: session-info text. Its tree, and the values that a lap gets from it, must be the same as
// with the plain importer.

#include "fuzz/require.h"
#include "reader/irtelemetryreader.h"
#include "tests/reference/reader.h"
#include "tests/support/comparelaps.h"

#include <QPair>

#include <cstdint>

namespace {

/// Enough for indexes of more than one digit; more of them only take time.
constexpr int Cars = 12;

/// Gives access to the members of a node.
struct Node : TStringTree {
    using TStringTree::subTrees;
    using TStringTree::values;
};

/// Compares whole trees without recursion, because they may be as deep as the text is long.
QString treeDifference(const TStringTree *tree, const reference::Tree *expected)
{
    QVector<QPair<const TStringTree *, const reference::Tree *>> todo = {{tree, expected}};
    while (!todo.isEmpty()) {
        const auto pair = todo.takeLast();
        const auto values = pair.first->*(&Node::values);
        const auto subTrees = pair.first->*(&Node::subTrees);
        if (values.keys() != pair.second->keys() || subTrees.keys() != pair.second->childNames())
            return QStringLiteral("names in the tree");
        for (auto value = values.cbegin(); value != values.cend(); ++value) {
            const QString other = pair.second->value(value.key());
            if (value.value() != other || value.value().isNull() != other.isNull())
                return QLatin1String("value of ") % value.key();
        }
        for (auto sub = subTrees.cbegin(); sub != subTrees.cend(); ++sub) {
            if (sub.value()->parent() != pair.first)
                return QLatin1String("parent of ") % sub.key();
            todo.append({sub.value(), pair.second->sub(sub.key())});
        }
    }
    return QString();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray text(reinterpret_cast<const char *>(data), int(size));
    iRTelemetryReader reader;
    reference::Reader plain;
    reader.resize(Cars);
    plain.resize(Cars);
    reader.setYaml(text.constData());
    plain.setYaml(text.constData());
    require(treeDifference(&reader, &plain));

    require(reader.updateCarList() == plain.updateCarList(), "the same names change");
    require(reader.myCarIdx() == plain.myCarIdx(), "the same player's car");
    const int mine = reader.hasMyCar() ? reader.myCarIdx() : 0;
    for (const int car : {0, mine}) {
        require(reader.driverName(car) == plain.driverName(car), "the same driver");
        require(reader.teamName(car) == plain.teamName(car), "the same team");
        ZEP::Lap lap;
        reference::Lap expected;
        reader.getSessionInfo(car, &lap);
        plain.getSessionInfo(car, &expected);
        require(LapComparison().difference(lap, expected));
    }
    return 0;
}
