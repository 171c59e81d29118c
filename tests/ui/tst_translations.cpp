// The languages of the window.
#include "Filters_UI.h"
#include "Surroundings.h"
#include "TestSuite.h"
#include "TestWindow.h"
#include "Translations.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Every text that a widget and those in it show to the user, but for what tables and lists hold.
QStringList shownTexts(const QWidget &window)
{
    QStringList texts{window.windowTitle()};
    for (const auto *button : window.findChildren<QAbstractButton *>())
        texts += {button->text(), button->toolTip()};
    for (const auto *label : window.findChildren<QLabel *>())
        texts += label->text();
    return texts;
}

/// Controls that show less than their whole text.
QStringList cutOff(const QWidget &window)
{
    QStringList names;
    const auto widgets = window.findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        const bool showsText = qobject_cast<const QAbstractButton *>(widget) != nullptr ||
                               qobject_cast<const QLabel *>(widget) != nullptr;
        if (widget->isVisible() && showsText && widget->width() < widget->minimumSizeHint().width())
            names += widget->objectName();
        const QRect place(widget->mapTo(&window, QPoint()), widget->size());
        if (widget->isVisible() && showsText && !window.rect().contains(place))
            names += widget->objectName();
    }
    return names;
}

} // namespace

class TestTranslations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { forgetSettings(); }

    void speaksTheFirstLanguageItKnows_data();
    void speaksTheFirstLanguageItKnows();
    void translatesEveryTextOfTheWindow();
    void translatesTheDialogs();
    void leavesReportsAndLogAsTheyAre();
    void fitsTheSmallestWindow_data();
    void fitsTheSmallestWindow();
};

void TestTranslations::speaksTheFirstLanguageItKnows_data()
{
    QTest::addColumn<QStringList>("languages");
    QTest::addColumn<QString>("start");
    QTest::newRow("German") << QStringList{u"de-DE"_s} << u"Aktualisieren"_s;
    QTest::newRow("Austrian German") << QStringList({u"de-AT"_s, u"de"_s}) << u"Aktualisieren"_s;
    QTest::newRow("English") << QStringList{u"en-GB"_s} << u"Start Update"_s;
    QTest::newRow("English, then German") << QStringList({u"en-US"_s, u"de-DE"_s}) << u"Start Update"_s;
    QTest::newRow("unknown, then German") << QStringList({u"fr-FR"_s, u"de-DE"_s}) << u"Aktualisieren"_s;
    QTest::newRow("unknown") << QStringList{u"ja-JP"_s} << u"Start Update"_s;
    QTest::newRow("none") << QStringList{u"C"_s} << u"Start Update"_s;
    QTest::newRow("none, then German") << QStringList({u"C"_s, u"de-DE"_s}) << u"Start Update"_s;
    QTest::newRow("nothing") << QStringList() << u"Start Update"_s;
}

void TestTranslations::speaksTheFirstLanguageItKnows()
{
    QFETCH(const QStringList, languages);
    QFETCH(const QString, start);
    const Translations translations(languages);
    const TestWindow window;
    QCOMPARE(window.ui.btnStart->text(), start);
}

void TestTranslations::translatesEveryTextOfTheWindow()
{
    const QSet<QString> names;
    QStringList english;
    {
        const TestWindow window;
        const Filters_UI dialog(&names, &names, nullptr);
        english = shownTexts(window) + shownTexts(dialog);
    }
    const Translations translations({u"de-DE"_s});
    const TestWindow window;
    const Filters_UI dialog(&names, &names, nullptr);
    const QStringList german = shownTexts(window) + shownTexts(dialog);
    QCOMPARE(german.size(), english.size());
    const QStringList same{u"Vantrel"_s, u"OK"_s, u"&OK"_s, QString()};
    for (qsizetype index = 0; index < german.size(); ++index) {
        if (!same.contains(english.at(index)))
            QVERIFY2(german.at(index) != english.at(index), qPrintable(english.at(index)));
    }
    QCOMPARE(window.ui.rplShapeTable->horizontalHeaderItem(1)->text(), u" Bilddatei"_s);
    QCOMPARE(window.ui.logTable->horizontalHeaderItem(2)->text(), u"Meldung"_s);
}

void TestTranslations::translatesTheDialogs()
{
    const Translations translations({u"de-DE"_s});
    const QSet<QString> names;
    const Filters_UI dialog(&names, &names, nullptr);
    const auto *buttons = dialog.findChild<QDialogButtonBox *>();
    QCOMPARE(buttons->button(QDialogButtonBox::Cancel)->text().remove(u'&'), u"Abbrechen"_s);
}

void TestTranslations::leavesReportsAndLogAsTheyAre()
{
    const TestProject project;
    project.makeFolder(u"log"_s);
    project.writeLines(u"scr/a.psc"_s, {"PNT;1"});
    const Translations translations({u"de-DE"_s});
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    window.onBtnStartPressed();
    QCOMPARE(window.ui.btnStart->text(), u"Abbrechen"_s);
    QTRY_VERIFY(!window.running);
    QTRY_COMPARE(window.logMessages().first(), u"End"_s);
    QCOMPARE(window.logMessages().last(), u"Start"_s);
    QCOMPARE(window.ui.rplShapeTable->item(0, 0)->text(), u"ERROR"_s);
    QVERIFY(project.read(u"log/"_s + project.files(u"log"_s).first())
                .startsWith("Status; Image File; Shape File; Image-Object; Replace by Shape-Object; "
                            "Uminitalisation; Error\nERROR;"));
}

void TestTranslations::fitsTheSmallestWindow_data()
{
    QTest::addColumn<QStringList>("languages");
    QTest::newRow("English") << QStringList{u"en"_s};
    QTest::newRow("German") << QStringList{u"de"_s};
}

void TestTranslations::fitsTheSmallestWindow()
{
    QFETCH(const QStringList, languages);
    const Translations translations(languages);
    TestWindow window;
    window.resize(800, 600);
    window.show();
    QCOMPARE(window.size(), QSize(800, 600));
    QCOMPARE(cutOff(window), QStringList());

    const QSet<QString> names{u"a"_s};
    Filters_UI dialog(&names, &names, nullptr);
    dialog.show();
    QCOMPARE(dialog.size(), QSize(616, 493));
    QCOMPARE(cutOff(dialog), QStringList());
}

VANTREL_TEST(QApplication, TestTranslations)
#include "tst_translations.moc"
