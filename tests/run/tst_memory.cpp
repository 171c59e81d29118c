// A run whose memory runs out at one image file goes on with the others.
#include "Converter.h"
#include "Recorders.h"
#include "TestProject.h"

#include <QtTest>

#include <atomic>
#include <cstdlib>
#include <new>

using namespace Qt::StringLiterals;

namespace {
std::atomic<std::size_t> largestBlock = SIZE_MAX;
}

// Every block that the program itself asks for passes here, that of an array too: the sanitizers have
// operators of their own for these.
void *operator new(std::size_t size)
{
    void *const block = size <= largestBlock ? std::malloc(size) : nullptr;
    if (block == nullptr)
        throw std::bad_alloc();
    return block;
}

void *operator new[](std::size_t size)
{
    return operator new(size);
}

void *operator new(std::size_t size, const std::nothrow_t & /*tag*/) noexcept
{
    return size <= largestBlock ? std::malloc(size) : nullptr;
}

void *operator new[](std::size_t size, const std::nothrow_t &tag) noexcept
{
    return operator new(size, tag);
}

void operator delete(void *block) noexcept
{
    std::free(block);
}

void operator delete(void *block, std::size_t /*size*/) noexcept
{
    std::free(block);
}

void operator delete[](void *block) noexcept
{
    std::free(block);
}

void operator delete[](void *block, std::size_t /*size*/) noexcept
{
    std::free(block);
}

namespace {

/// While it lives, there is no memory for larger blocks.
class LittleMemory final
{
    Q_DISABLE_COPY_MOVE(LittleMemory)

public:
    LittleMemory() { largestBlock = std::size_t{1} << 20; }
    ~LittleMemory() { largestBlock = SIZE_MAX; }
};

/// Objects of different levels, since those of one level are one object.
QByteArray objects(int count)
{
    QByteArray lines;
    for (int level = 1; level <= count; ++level) {
        lines += "ID;1;Object\nLIB;a.plb;1;obj;OBJ:old\nPSDV;0;0;9;9;0;1;0;0;0;0;" +
                 QByteArray::number(level) + '\n';
    }
    return lines;
}

/// Thirty times as long as an object.
const QByteArray shape = "ID;1;Shape\nLIB;a;1;std;OBJ:new\nPSDV;0;0;9;9;0;1;0;0;0;0;0;z\n"_ba +
                         QByteArray("TXT;a line of some length\n").repeated(100);

} // namespace

class TestMemory final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void goesOnBehindAFileThatIsTooMuch_data();
    void goesOnBehindAFileThatIsTooMuch();
};

void TestMemory::goesOnBehindAFileThatIsTooMuch_data()
{
    QTest::addColumn<QByteArray>("tooMuch");
    QTest::newRow("when it is read") << QByteArray("TXT\n").repeated(200'000);
    QTest::newRow("when its objects are replaced") << objects(1'000);
}

void TestMemory::goesOnBehindAFileThatIsTooMuch()
{
    QFETCH(QByteArray, tooMuch);
    const TestProject project;
    project.write(u"mac/a.plb"_s, shape);
    project.write(u"scr/a.psc"_s, objects(1));
    project.write(u"scr/b.psc"_s, tooMuch);
    project.write(u"scr/c.psc"_s, objects(1));

    Converter converter(project.dir());
    converter.setFilterNames({u"a.plb"_s});
    const RunRecorder recorder(converter);
    const LogRecorder log;
    {
        const LittleMemory memory;
        converter.convert();
    }

    const QString complaint = u"There is not enough memory for Image File"_s;
    QCOMPARE(recorder.reports.constLast().imageFile, project.path(u"scr/c.psc"_s));
    QCOMPARE(recorder.endedRuns(), 1);
    const auto isComplaint = [&](const STBlock &report) { return report.error == complaint; };
    const auto report = std::find_if(recorder.reports.cbegin(), recorder.reports.cend(), isComplaint);
    QVERIFY(report != recorder.reports.cend());
    QCOMPARE(report->imageFile, project.path(u"scr/b.psc"_s));
    QCOMPARE(report->status, ReportStatus::Error);
    QCOMPARE(log.entries, QStringList{u"error: %1 %2"_s.arg(complaint, project.path(u"scr/b.psc"_s))});

    QCOMPARE(project.files(u"scr"_s), (QStringList{u"a.psc"_s, u"c.psc"_s}));
    QVERIFY(project.read(u"scr/c.psc"_s).contains("OBJ:new"));
    QCOMPARE(project.read(u"scr_bak/b.psc"_s), tooMuch);
    QVERIFY(!project.exists(u"scr_temp"_s));
    QVERIFY(!project.exists(u".vantrel.run"_s));
}

QTEST_GUILESS_MAIN(TestMemory)
#include "tst_memory.moc"
