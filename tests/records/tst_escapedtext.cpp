// Control characters of names, spelt out.
#include "EscapedText.h"
#include "TestSuite.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class TestEscapedText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void spellsOut_data();
    void spellsOut();
};

void TestEscapedText::spellsOut_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("withoutAsciiControls");
    QTest::newRow("plain") << u"pump 1;\u00fc\u20ac"_s << u"pump 1;\u00fc\u20ac"_s
                           << u"pump 1;\u00fc\u20ac"_s;
    QTest::newRow("empty") << QString() << QString() << QString();
    QTest::newRow("line ends and tab") << u"a\nb\rc\td"_s << uR"(a\nb\rc\td)"_s << uR"(a\nb\rc\td)"_s;
    QTest::newRow("others") << u"a\u001b[1m\u0007\u007f"_s << uR"(a\x1b[1m\x07\x7f)"_s
                            << uR"(a\x1b[1m\x07\x7f)"_s;
    QTest::newRow("null") << QString(u'\0') + u'a' << uR"(\x00a)"_s << uR"(\x00a)"_s;
    QTest::newRow("control above ASCII") << u"a\u009b2J"_s << uR"(a\x9b2J)"_s << u"a\u009b2J"_s;
    QTest::newRow("letter in two bytes") << u"\u00c3\u009f"_s << u"\u00c3\\x9f"_s << u"\u00c3\u009f"_s;
    QTest::newRow("turned text") << u"a\u202eb"_s << uR"(a\u202eb)"_s << u"a\u202eb"_s;
    QTest::newRow("line separator") << u"a\u2028b"_s << uR"(a\u2028b)"_s << u"a\u2028b"_s;
}

void TestEscapedText::spellsOut()
{
    QFETCH(const QString, text);
    QTEST(escaped(text), "shown");
    QTEST(withAsciiControlsEscaped(text), "withoutAsciiControls");
}

VANTREL_TEST(TestSuite::NoApplication, TestEscapedText)
#include "tst_escapedtext.moc"
