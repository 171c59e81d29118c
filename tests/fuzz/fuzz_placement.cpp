// Any lines as those of a shape, put onto any place: moved and rebased, cut and joined again.
//
// The first line of an input says where to; '|' separates its fields:
//     left|top|right|bottom of the object|the same of the shape|level|extra text|from|to
#include "Converter.h"
#include "Expect.h"
#include "RecordFields.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

struct Placement
{
    Converter::STBlock target;
    Converter::STBlock shape;
    QString fromPrefix;
    QString toPrefix;
};

Placement placementOf(const QString &line)
{
    const QStringList fields = line.split(u'|');
    const auto rectangle = [&fields](qsizetype first) {
        QRect rect;
        rect.setCoords(fields.value(first).toInt(), fields.value(first + 1).toInt(),
                       fields.value(first + 2).toInt(), fields.value(first + 3).toInt());
        return rect;
    };
    Placement placement;
    placement.target.rect = rectangle(0);
    placement.shape.rect = rectangle(4);
    placement.target.extraNumber = fields.value(8).toInt();
    placement.target.extraText = fields.value(9);
    placement.fromPrefix = fields.value(10);
    placement.toPrefix = fields.value(11);
    placement.shape.imageObject = placement.fromPrefix;
    placement.target.initText = placement.toPrefix;
    return placement;
}

bool isPlaced(const QString &line)
{
    return line.startsWith("PNT;"_L1) || line.startsWith("PSDV"_L1);
}

bool isRebased(const QString &line)
{
    constexpr std::array tags{"LIB"_L1,  "IVG;"_L1, "IBG;"_L1, "ITC;"_L1, "IVGN"_L1, "IBGN"_L1,
                              "ITCN"_L1, "ITA"_L1,  "IDMS"_L1, "ITX1"_L1, "ITX2"_L1, "ITXN"_L1,
                              "IIK1"_L1, "IIK2"_L1, "IIKN"_L1, "ISB"_L1,  "ISA"_L1,  "IX1"_L1,
                              "IX2"_L1,  "IY1"_L1,  "IY2"_L1,  "IBW"_L1};
    return std::any_of(tags.begin(), tags.end(), [&line](auto tag) { return line.startsWith(tag); });
}

void expectJoinedAgain(const QStringList &lines)
{
    for (const QString &line : lines) {
        QString joined = u"former text"_s;
        joinFields(line.split(u';'), joined);
        expect(joined == line, "a line that is cut and joined is the line again");
    }
}

/// Each of a line's numbers becomes a number, of eleven characters at most; so do those of the extra
/// text where it is put into the place of missing ones.
qsizetype longestResult(const QString &line, const Placement &placement)
{
    constexpr qsizetype longestField = 11;
    const qsizetype fields = line.count(u';') + placement.target.extraText.count(u';') + 2;
    return line.size() + fields * (longestField + placement.toPrefix.size()) +
           placement.target.extraText.size() + 1;
}

void expectPlaced(const QStringList &before, const QStringList &after, const Placement &placement)
{
    expect(before.size() == after.size(), "placing keeps the number of lines");
    for (qsizetype index = 0; index < before.size(); ++index) {
        const QString &line = before.at(index);
        expect(isPlaced(line) || after.at(index) == line, "placing leaves other lines alone");
        expect(after.at(index).size() <= longestResult(line, placement), "a placed line is bounded");
        if (line.startsWith("PNT;"_L1))
            expect(after.at(index).count(u';') == line.count(u';'), "points keep their number");
    }
}

void expectRebased(const QStringList &before, const QStringList &after, const Placement &placement)
{
    expect(before.size() == after.size(), "rebasing keeps the number of lines");
    for (qsizetype index = 0; index < before.size(); ++index) {
        const QString &line = before.at(index);
        expect(isRebased(line) || after.at(index) == line, "rebasing leaves other lines alone");
        expect(after.at(index).size() <= longestResult(line, placement), "a rebased line is bounded");
        if (!placement.toPrefix.contains(u';'))
            expect(after.at(index).count(u';') == line.count(u';'), "rebasing keeps the fields");
    }
}

/// From a prefix to itself, by nothing: all stays but what is set and how numbers are spelt.
void expectIdentity(Converter &converter, const QStringList &lines, const Placement &placement)
{
    QStringList same = lines;
    converter.rebaseShapeLines(same, placement.fromPrefix, placement.fromPrefix, 0, 0);
    for (qsizetype index = 0; index < lines.size(); ++index) {
        const QString &line = lines.at(index);
        const bool isWritten =
            line.startsWith("LIB"_L1) || line.startsWith("IX"_L1) || line.startsWith("IY"_L1);
        expect(isWritten || same.at(index) == line, "a prefix put in place of itself changes nothing");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static Converter converter{QString()};

    QStringList lines = linesOf(bytesOf(data, size));
    if (lines.isEmpty())
        return 0;
    const Placement placement = placementOf(lines.takeFirst());
    expectJoinedAgain(lines);

    QStringList placed = lines;
    converter.placeShapeLines(placed, placement.target, placement.shape);
    expectPlaced(lines, placed, placement);

    const int xShift = placement.target.rect.left();
    const int yShift = placement.target.rect.top();
    QStringList rebased = placed;
    converter.rebaseShapeLines(rebased, placement.fromPrefix, placement.toPrefix, xShift, yShift);
    expectRebased(placed, rebased, placement);
    expectIdentity(converter, lines, placement);
    return 0;
}
