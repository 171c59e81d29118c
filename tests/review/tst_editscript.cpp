// The steps that lead from one list of lines to another.
#include "EditScript.h"
#include "TestSuite.h"

#include <QTest>

#include <algorithm>
#include <numeric>
#include <random>

using Lines = std::vector<int>;
Q_DECLARE_METATYPE(Lines)

namespace {

Lines countingFrom(int first, int count)
{
    Lines lines(static_cast<std::size_t>(count));
    std::iota(lines.begin(), lines.end(), first);
    return lines;
}

/// What the script makes of the old lines, taking what it adds from the new ones; nothing where it
/// keeps a line that differs, or leaves any out.
Lines applied(const QByteArray &script, const Lines &before, const Lines &after)
{
    Lines made;
    auto oldLine = before.cbegin();
    auto newLine = after.cbegin();
    for (const char sign : script) {
        if (sign == ' ' && *oldLine != *newLine)
            return {};
        if (sign != '-')
            made.push_back(*newLine++);
        oldLine += sign == '+' ? 0 : 1;
    }
    return oldLine == before.cend() && newLine == after.cend() ? made : Lines();
}

/// How many lines two lists have in common at most, found in a way that takes all of a table.
int longestCommon(const Lines &before, const Lines &after)
{
    std::vector<Lines> longest(before.size() + 1, Lines(after.size() + 1, 0));
    for (std::size_t oldLine = 0; oldLine < before.size(); ++oldLine) {
        for (std::size_t newLine = 0; newLine < after.size(); ++newLine) {
            longest[oldLine + 1][newLine + 1] =
                before[oldLine] == after[newLine]
                    ? longest[oldLine][newLine] + 1
                    : std::max(longest[oldLine][newLine + 1], longest[oldLine + 1][newLine]);
        }
    }
    return longest[before.size()][after.size()];
}

} // namespace

class TestEditScript final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsEachLine_data();
    void tellsEachLine();
    void keepsAsManyLinesAsCanBe();
    void leadsThroughManyDifferences();
    void replacesWhatDiffersTooMuch();
    void replacesWhatIsFarTooLong();
};

void TestEditScript::tellsEachLine_data()
{
    QTest::addColumn<Lines>("before");
    QTest::addColumn<Lines>("after");
    QTest::addColumn<QByteArray>("script");
    QTest::newRow("nothing") << Lines() << Lines() << QByteArray();
    QTest::newRow("equal") << Lines{1, 2, 1} << Lines{1, 2, 1} << QByteArray("   ");
    QTest::newRow("all new") << Lines() << Lines{1, 2} << QByteArray("++");
    QTest::newRow("all gone") << Lines{1, 2} << Lines() << QByteArray("--");
    QTest::newRow("one added") << Lines{1, 3} << Lines{1, 2, 3} << QByteArray(" + ");
    QTest::newRow("one removed") << Lines{1, 2, 3} << Lines{1, 3} << QByteArray(" - ");
    QTest::newRow("one moved") << Lines{1, 2, 3} << Lines{2, 3, 1} << QByteArray("-  +");
}

void TestEditScript::tellsEachLine()
{
    QFETCH(const Lines, before);
    QFETCH(const Lines, after);
    QTEST(editScript(before, after), "script");
}

void TestEditScript::keepsAsManyLinesAsCanBe()
{
    std::mt19937 random(1);
    const auto upTo = [&random](int most) {
        return static_cast<int>(random() % static_cast<unsigned>(most + 1));
    };
    for (int round = 0; round < 2000; ++round) {
        const int spellings = upTo(30);
        Lines before(static_cast<std::size_t>(upTo(40)));
        Lines after(static_cast<std::size_t>(upTo(40)));
        for (int &line : before)
            line = upTo(spellings);
        for (int &line : after)
            line = upTo(spellings);
        const QByteArray script = editScript(before, after);
        QVERIFY(applied(script, before, after) == after);
        QCOMPARE(static_cast<int>(script.count(' ')), longestCommon(before, after));
    }
}

/// More than are found in one piece.
void TestEditScript::leadsThroughManyDifferences()
{
    constexpr int lines = 9000;
    const Lines before = countingFrom(0, lines);
    Lines after = before;
    for (int line = 0; line < lines; ++line)
        after[static_cast<std::size_t>(line)] += line % 3 == 0 ? 0 : lines;
    const QByteArray script = editScript(before, after);
    QVERIFY(applied(script, before, after) == after);
    QCOMPARE(static_cast<int>(script.count(' ')), lines / 3);
}

/// A line that both end in shows where the comparison has given up.
void TestEditScript::replacesWhatDiffersTooMuch()
{
    constexpr int few = 10'000;
    constexpr int many = 200'000;
    const auto keptOf = [](int lines) {
        Lines before = countingFrom(0, lines);
        Lines after = countingFrom(lines, lines);
        before.insert(before.begin(), -1);
        after.insert(after.begin(), -1);
        before.push_back(-2);
        after.push_back(-2);
        const QByteArray script = editScript(before, after);
        return applied(script, before, after) == after ? static_cast<int>(script.count(' ')) : -1;
    };
    QCOMPARE(keptOf(few), 2);
    QCOMPARE(keptOf(many), 1);
}

void TestEditScript::replacesWhatIsFarTooLong()
{
    const auto keptOf = [](int lines) {
        const Lines before{lines};
        return static_cast<int>(editScript(before, countingFrom(1, lines)).count(' '));
    };
    QCOMPARE(keptOf(1'000'000), 1);
    QCOMPARE(keptOf(3'000'000), 0);
}

VANTREL_TEST(TestSuite::NoApplication, TestEditScript)
#include "tst_editscript.moc"
