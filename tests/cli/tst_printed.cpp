// What leaves the program, whatever names and lines hold: text without control characters, and
// lines of JSON in valid UTF-8.
#include "CliRun.h"
#include "TestSuite.h"

#include <QJsonDocument>
#include <QRegularExpression>
#include <QStringDecoder>
#include <QtTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Escape sequences, a line end, a bell, the highest ASCII character and one above it that
/// terminals take for an escape sequence; marks and turns of direction, blanks without a width, a
/// byte order mark, and tags.
const QString nastyText =
    u"a\u001b[31m\nb\u0007\u007f\u009b2Jc\u061c\u200b\u200f\u2028\u202a\u202e\u2060\u206f\ufeff"
    "\U000e0000\U000e007f"_s;

/// The same as it stands in a screen; a line end would end the line.
const QByteArray nastyBytes = "a\x1b[31m\rb\x07\x7f\x9b"
                              "2Jc";

/// An object, and the same behind its change.
QByteArray screen(const QByteArray &text)
{
    return "ID;1;O\nLIB;" + nastyBytes + ".plb;1;p" + nastyBytes + ";OBJ:" + nastyBytes +
           "\nPSDV;0;0;9;9;0;1;0;0;0;0;1\nTXT;" + text + "\nID;1;P\nPSDV;0;0;9;9;0;1;0;0;0;0;0\n";
}

void fillPlant(const TestProject &project)
{
    project.write(u"scr/"_s + nastyText + ".psc"_L1, screen(nastyBytes));
    project.write(u"scr/invalid"_s + nastyText + ".psc"_L1, "ID;1\n");
    project.write(u"scr/other"_s + nastyText, {});
    project.write(u"scr_bak/"_s + nastyText + ".psc"_L1, screen("before" + nastyBytes));
    project.write(u"mac/other.plb"_s, "ID;1;S\n");
}

QString decoded(const QByteArray &bytes, bool &isValid)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    isValid = !decoder.hasError();
    return text;
}

bool isPlainText(const QByteArray &bytes)
{
    bool isValid = false;
    const QString text = decoded(bytes, isValid);
    static const QRegularExpression unseen(
        u"[\\x00-\\x09\\x0b-\\x1f\\x7f-\\x9f\\x{61c}\\x{200b}-\\x{200f}\\x{2028}-\\x{202e}"
        "\\x{2060}-\\x{206f}\\x{feff}\\x{e0000}-\\x{e007f}]"_s);
    return isValid && !unseen.match(text).hasMatch();
}

bool isJsonObject(const QByteArray &line)
{
    bool isValid = false;
    decoded(line, isValid);
    return isValid && QJsonDocument::fromJson(line).isObject();
}

} // namespace

class TestPrinted : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void printsNoControlCharacters_data();
    void printsNoControlCharacters();
    void printsJsonInValidUtf8_data();
    void printsJsonInValidUtf8();
    void keepsTheMeaningOfJson();
    void printsNoControlCharactersOfItsArguments_data();
    void printsNoControlCharactersOfItsArguments();
};

void TestPrinted::printsNoControlCharacters_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::newRow("check") << QStringList{u"check"_s, u"--shape"_s, nastyText};
    QTest::newRow("shapes") << QStringList{u"shapes"_s};
    QTest::newRow("diff") << QStringList{u"diff"_s};
    QTest::newRow("refused update") << QStringList{u"update"_s, u"--all-shapes"_s};
    QTest::newRow("update") << QStringList{u"update"_s, u"--all-shapes"_s, u"--force"_s};
    QTest::newRow("dry run") << QStringList{u"update"_s, u"--all-shapes"_s, u"--force"_s, u"--dry-run"_s};
}

void TestPrinted::printsNoControlCharacters()
{
    QFETCH(const QStringList, words);
    const TestProject project;
    fillPlant(project);
    const CliResult result = CliRun().execute(words + QStringList{u"--project"_s, project.dir()});
    QVERIFY(result.exitCode != CliResult::noExitCode);
    QVERIFY2((result.output + result.errorOutput).contains("[31m"), "the names were not printed at all");
    QVERIFY2(isPlainText(result.output), result.output.toPercentEncoding(" \n;").constData());
    QVERIFY2(isPlainText(result.errorOutput), result.errorOutput.toPercentEncoding(" \n;").constData());
}

void TestPrinted::printsJsonInValidUtf8_data()
{
    printsNoControlCharacters_data();
}

void TestPrinted::printsJsonInValidUtf8()
{
    QFETCH(const QStringList, words);
    const TestProject project;
    fillPlant(project);
    const CliResult result =
        CliRun().execute(words + QStringList{u"--json"_s, u"--project"_s, project.dir()});
    QVERIFY(result.output.endsWith('\n'));
    const QByteArrayList lines = result.output.chopped(1).split('\n');
    QVERIFY2(result.output.contains("[31m"), "the names were not printed at all");
    for (const QByteArray &line : lines)
        QVERIFY2(isJsonObject(line), line.toPercentEncoding(" ").constData());
    QVERIFY2(isPlainText(result.output), result.output.toPercentEncoding(" \n;").constData());
}

void TestPrinted::keepsTheMeaningOfJson()
{
    const TestProject project;
    project.write(u"scr/other"_s + nastyText, {});
    const CliResult result = CliRun().execute({u"check"_s, u"--json"_s, u"--project"_s, project.dir()});
    const QByteArrayList lines = result.output.split('\n');
    QVERIFY2(std::any_of(lines.cbegin(), lines.cend(),
                         [](const QByteArray &line) {
                             const QJsonValue path = QJsonDocument::fromJson(line)["path"_L1];
                             return path.toString() == u"scr/other"_s + nastyText;
                         }),
             result.output.constData());
}

void TestPrinted::printsNoControlCharactersOfItsArguments_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::newRow("command") << QStringList{nastyText};
    QTest::newRow("option") << QStringList{u"--"_s + nastyText};
    QTest::newRow("option of a command") << QStringList{u"check"_s, u"--"_s + nastyText};
    QTest::newRow("project") << QStringList{u"check"_s, u"--json"_s, u"--project"_s, nastyText};
    QTest::newRow("list of shapes") << QStringList{u"update"_s, u"--project"_s, u"/tmp"_s, u"--shapes-from"_s,
                                                   nastyText};
    QTest::newRow("colour") << QStringList{u"check"_s, u"--color"_s, nastyText};
}

void TestPrinted::printsNoControlCharactersOfItsArguments()
{
    QFETCH(const QStringList, words);
    const CliResult result = CliRun().execute(words);
    const QByteArray printed = result.output + result.errorOutput;
    QVERIFY2(printed.contains("[31m"), "the argument was not printed at all");
    QVERIFY2(isPlainText(printed), printed.toPercentEncoding(" \n;").constData());
}

VANTREL_TEST(QCoreApplication, TestPrinted)
#include "tst_printed.moc"
