// The command line of the program.
#include "CommandLine.h"
#include "TestProject.h"
#include "TestSuite.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestCommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsTheWindowWithoutArguments();
    void printsOnRequest_data();
    void printsOnRequest();
    void refusesWhatItDoesNotKnow_data();
    void refusesWhatItDoesNotKnow();
    void leavesQtItsOptions_data();
    void leavesQtItsOptions();
    void opensAProject_data();
    void opensAProject();
    void takesAllForProjectsAfterTwoDashes();
    void decodesItsArguments();
};

void TestCommandLine::showsTheWindowWithoutArguments()
{
    const CommandLine commandLine = readCommandLine({});
    QCOMPARE(commandLine.wish, CommandLine::ShowWindow);
    QCOMPARE(commandLine.projectDir, QString());
}

void TestCommandLine::printsOnRequest_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("beginning");
    QTest::newRow("help") << QStringList{u"--help"_s} << u"Usage: vantrel [options] [PROJECT_DIR]\n"_s;
    QTest::newRow("help, short") << QStringList{u"-h"_s} << u"Usage: vantrel "_s;
    QTest::newRow("version") << QStringList{u"--version"_s} << u"vantrel 0."_s;
    QTest::newRow("version, short") << QStringList{u"-v"_s} << u"vantrel 0."_s;
    QTest::newRow("among others") << QStringList{u"/"_s, u"--help"_s, u"--odd"_s} << u"Usage: "_s;
}

void TestCommandLine::printsOnRequest()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QString, beginning);
    const CommandLine commandLine = readCommandLine(arguments);
    QCOMPARE(commandLine.wish, CommandLine::PrintAndEnd);
    QVERIFY2(commandLine.text.startsWith(beginning), qPrintable(commandLine.text));
    QVERIFY(commandLine.text.endsWith(u'\n'));
}

void TestCommandLine::refusesWhatItDoesNotKnow_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("reason");
    QTest::newRow("long option") << QStringList{u"--odd"_s} << u"unknown option \"--odd\""_s;
    QTest::newRow("short option") << QStringList{u"-x"_s} << u"unknown option \"-x\""_s;
    QTest::newRow("option with value") << QStringList{u"--odd=1"_s} << u"unknown option \"--odd=1\""_s;
    QTest::newRow("begins like one of Qt's")
        << QStringList{u"-platforms"_s} << u"unknown option \"-platforms\""_s;
    QTest::newRow("two projects") << QStringList{u"/"_s, u"/tmp"_s} << u"\"/tmp\" was not expected"_s;
    QTest::newRow("missing project") << QStringList{u"/no/such"_s} << u"there is no project \"/no/such\""_s;
    QTest::newRow("empty project") << QStringList{QString()} << u"there is no project \"\""_s;
    QTest::newRow("single dash") << QStringList{u"-"_s} << u"there is no project \"-\""_s;
    QTest::newRow("file in no project")
        << QStringList{u"/dev/null"_s} << u"there is no project \"/dev/null\""_s;
}

void TestCommandLine::refusesWhatItDoesNotKnow()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QString, reason);
    const CommandLine commandLine = readCommandLine(arguments);
    QCOMPARE(commandLine.wish, CommandLine::RefuseAndEnd);
    QCOMPARE(commandLine.text, u"vantrel: %1; see \"vantrel --help\"\n"_s.arg(reason));
}

void TestCommandLine::leavesQtItsOptions_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("with a value") << QStringList{u"-platform"_s, u"offscreen"_s};
    QTest::newRow("two dashes") << QStringList{u"--platform"_s, u"offscreen"_s};
    QTest::newRow("value behind an equals sign") << QStringList{u"-style=fusion"_s};
    QTest::newRow("alone") << QStringList{u"-reverse"_s};
    QTest::newRow("value left out at the end") << QStringList{u"-style"_s};
    QTest::newRow("several") << QStringList{u"-reverse"_s, u"-style"_s, u"fusion"_s};
}

void TestCommandLine::leavesQtItsOptions()
{
    QFETCH(const QStringList, arguments);
    const CommandLine commandLine = readCommandLine(arguments);
    QCOMPARE(commandLine.wish, CommandLine::ShowWindow);
    QCOMPARE(commandLine.projectDir, QString());
    if (arguments.last() == "-style"_L1)
        return;
    QCOMPARE(readCommandLine(arguments + QStringList{u"/"_s}).projectDir, u"/"_s);
}

void TestCommandLine::opensAProject_data()
{
    QTest::addColumn<QString>("argument");
    QTest::newRow("folder") << QString();
    QTest::newRow("folder with a slash") << u"/"_s;
    QTest::newRow("roundabout") << u"/scr/../mac/.."_s;
    QTest::newRow("screen") << u"/scr/a.psc"_s;
    QTest::newRow("folder of shapes") << u"/mac"_s;
}

void TestCommandLine::opensAProject()
{
    QFETCH(const QString, argument);
    const TestProject project;
    project.write(u"scr/a.psc"_s, "");
    project.makeFolder(u"mac"_s);
    const CommandLine absolute = readCommandLine({project.dir() + argument});
    QCOMPARE(absolute.wish, CommandLine::ShowWindow);
    QCOMPARE(absolute.projectDir, project.dir());

    QVERIFY(QDir::setCurrent(project.beside(QString())));
    const CommandLine relative = readCommandLine({u"plant"_s + argument});
    QVERIFY(QDir::setCurrent(u"/"_s));
    QCOMPARE(relative.projectDir, project.dir());
}

void TestCommandLine::takesAllForProjectsAfterTwoDashes()
{
    const TestProject project(u"--help"_s);
    project.makeFolder(u"scr"_s);
    QVERIFY(QDir::setCurrent(project.beside(QString())));
    const CommandLine commandLine = readCommandLine({u"--"_s, u"--help"_s});
    QVERIFY(QDir::setCurrent(u"/"_s));
    QCOMPARE(commandLine.wish, CommandLine::ShowWindow);
    QCOMPARE(commandLine.projectDir, project.dir());
}

void TestCommandLine::decodesItsArguments()
{
    const char *const arguments[] = {"vantrel", "gr\xc3\xbcn", ""};
    QCOMPARE(decodedArguments(3, arguments), QStringList({u"gr\u00fcn"_s, QString()}));
    QCOMPARE(decodedArguments(1, arguments), QStringList());
    QCOMPARE(decodedArguments(0, arguments), QStringList());
}

VANTREL_TEST(QCoreApplication, TestCommandLine)
#include "tst_commandline.moc"
