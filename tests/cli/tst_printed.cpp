// What leaves the program, whatever names and lines hold: text without control characters, and
// lines of JSON in valid UTF-8.
#include "CliRun.h"
#include "TestSuite.h"

#include <QJsonDocument>
#include <QStringDecoder>
#include <QtTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Escape sequences, a line end, a bell, the highest ASCII character and one above it that
/// terminals take for an escape sequence.
const QString nastyText = u"a\u001b[31m\nb\u0007\u007f\u009b2Jc"_s;

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
    return isValid && std::none_of(text.begin(), text.end(), [](QChar character) {
               return character.category() == QChar::Other_Control && character != u'\n';
           });
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
}

VANTREL_TEST(QCoreApplication, TestPrinted)
#include "tst_printed.moc"
