// docs/record-format.md shows the tables of the grammar as the code has them.
#include "RecordGrammar.h"
#include "TestSuite.h"

#include <QFile>
#include <QStringList>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace RecordGrammar;

namespace {

QString code(QStringView text)
{
    return text.isEmpty() ? u"(empty)"_s : u"`%1`"_s.arg(text);
}

QString minimum(int fields, FieldRule rule)
{
    if (fields == notChecked)
        return u"not checked"_s;
    switch (rule) {
    case FieldRule::AtLeast:
        return u"at least %1"_s.arg(fields);
    case FieldRule::Points:
        return u"exactly %1 + 2n"_s.arg(fields);
    case FieldRule::Entries:
        return u"at least %1, then at least %2(n + 1)"_s.arg(fields).arg(Entries::fieldsOfEntry);
    }
    return {};
}

QString numbers(const auto &positions)
{
    QStringList texts;
    for (const auto position : positions)
        texts.append(QString::number(position));
    return texts.isEmpty() ? u"none"_s : texts.join(u", ");
}

QString besides(Rebase kind)
{
    switch (kind) {
    case Rebase::References:
        return {};
    case Rebase::Initialise:
        return u"field %1 becomes the new prefix"_s.arg(Library::initText);
    case Rebase::EachEntry:
        return u"and %1, %2, %3, ... for n entries"_s.arg(Entries::firstReference)
            .arg(Entries::firstReference + Entries::fieldsOfEntry)
            .arg(Entries::firstReference + qsizetype{2} * Entries::fieldsOfEntry);
    case Rebase::ShiftAcross:
    case Rebase::ShiftDown:
        return u"and %1 where they hold a `:`; then %2 are moved %3"_s.arg(
            numbers(axisReferences), numbers(axisNumbers),
            kind == Rebase::ShiftAcross ? u"across"_s : u"down"_s);
    }
    return {};
}

QString checkTable()
{
    QString table = u"| Line begins with | Tag in messages | Fields in a shape | Fields in an image file |\n"
                    "|---|---|---|---|\n"_s;
    for (const CheckRule &rule : checkRules) {
        table += u"| %1 | %2 | %3 | %4 |\n"_s.arg(code(rule.prefix), code(rule.messageTag),
                                                  minimum(rule.shapeFields, rule.rule),
                                                  minimum(rule.imageFields, rule.rule));
    }
    return table;
}

QString rebaseTable()
{
    QString table = u"| Line begins with | File references | Besides |\n|---|---|---|\n"_s;
    for (const RebaseRule &rule : rebaseRules) {
        table += u"| %1 | %2 | %3 |\n"_s.arg(code(rule.prefix), numbers(rule.references), besides(rule.kind));
    }
    return table;
}

const QString documentPath = QStringLiteral(VANTREL_SOURCE_DIR "/docs/record-format.md");

QString readDocument()
{
    QFile document(documentPath);
    return document.open(QIODevice::ReadOnly) ? QString::fromUtf8(document.readAll()) : QString();
}

void writeDocument(const QString &text)
{
    QFile document(documentPath);
    QVERIFY(document.open(QIODevice::WriteOnly));
    document.write(text.toUtf8());
}

/// The table of the document that begins with the same row as `table`; it ends at an empty line.
QString documentedTable(const QString &document, const QString &table)
{
    const qsizetype begin = document.indexOf(table.left(table.indexOf(u'\n')));
    if (begin < 0)
        return {};
    const qsizetype end = document.indexOf(u"\n\n"_s, begin);
    return document.sliced(begin, (end < 0 ? document.size() - 1 : end) + 1 - begin);
}

} // namespace

class TestRecordFormat final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void documentsTheTablesOfTheCode_data();
    void documentsTheTablesOfTheCode();
    void documentsTheFieldsThatAreRead();
};

void TestRecordFormat::documentsTheTablesOfTheCode_data()
{
    QTest::addColumn<QString>("table");
    QTest::newRow("field counts") << checkTable();
    QTest::newRow("references") << rebaseTable();
}

void TestRecordFormat::documentsTheTablesOfTheCode()
{
    QFETCH(const QString, table);
    const QString documented = documentedTable(readDocument(), table);
    if (qEnvironmentVariableIsSet("VANTREL_UPDATE_GOLDEN"))
        writeDocument(readDocument().replace(documented, table));
    else
        QCOMPARE(documented.split(u'\n'), table.split(u'\n'));
}

void TestRecordFormat::documentsTheFieldsThatAreRead()
{
    const QString text = readDocument();
    const QStringList rows{
        u"| `ID;` | %1: "_s.arg(Section::kind),
        u"| `PNT;` | %1: n; from %2: "_s.arg(counter).arg(Points::first),
        u"| `PSDV` | %1, %2, %3, %4: "_s.arg(Rectangle::x1)
            .arg(Rectangle::y1)
            .arg(Rectangle::x2)
            .arg(Rectangle::y2),
        u"; %1: "_s.arg(Rectangle::counts),
        u"; %1: the object's level; from %2: "_s.arg(Rectangle::level).arg(Rectangle::extra),
        u"| `LIB` | %1: "_s.arg(Library::shapeFile),
        u"; %1: the prefix"_s.arg(Library::initText),
        u"; %1: the name"_s.arg(Library::objectName),
        u"| `DIV` | %1: "_s.arg(Bitmap::fileName),
    };
    for (const QString &row : rows)
        QVERIFY2(text.contains(row), qPrintable(row));
}

VANTREL_TEST(QCoreApplication, TestRecordFormat)
#include "tst_recordformat.moc"
