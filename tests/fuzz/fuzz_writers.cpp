// Any texts in a report: written to the change log, as JSON, and as text for people.
#include "ChangeLog.h"
#include "EscapedText.h"
#include "Expect.h"
#include "JsonPresenter.h"
#include "TestProject.h"
#include "TextPresenter.h"

#include <QFile>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <fuzzer/FuzzedDataProvider.h>

using namespace Qt::StringLiterals;

namespace {

/// A stream into memory.
class MemoryStream final
{
public:
    MemoryStream()
        : m_stream(fdopen(memfd_create("output", 0), "w+"))
    {
    }
    ~MemoryStream() { std::fclose(m_stream); }
    MemoryStream(const MemoryStream &) = delete;
    MemoryStream &operator=(const MemoryStream &) = delete;

    std::FILE *stream() const { return m_stream; }
    QByteArray written() const
    {
        const int file = fileno(m_stream);
        QByteArray bytes(lseek(file, 0, SEEK_END), '\0');
        bytes.truncate(pread(file, bytes.data(), static_cast<std::size_t>(bytes.size()), 0));
        return bytes;
    }

private:
    std::FILE *m_stream;
};

/// A text of any code units, halves of pairs too, or of bytes as they stand in a screen.
QString textFrom(FuzzedDataProvider &data)
{
    const bool isLatin1 = data.ConsumeBool();
    const std::string bytes = data.ConsumeRandomLengthString(200);
    if (isLatin1)
        return QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
    QString text;
    for (std::size_t index = 0; index + 1 < bytes.size(); index += 2) {
        const auto high = static_cast<unsigned char>(bytes[index]);
        const auto low = static_cast<unsigned char>(bytes[index + 1]);
        text.append(QChar(high << 8 | low));
    }
    return text;
}

Converter::STBlock reportFrom(FuzzedDataProvider &data)
{
    Converter::STBlock report;
    report.status = data.ConsumeIntegral<int>();
    report.extraNumber = data.ConsumeIntegral<int>();
    report.rect.setCoords(data.ConsumeIntegral<int>(), data.ConsumeIntegral<int>(),
                          data.ConsumeIntegral<int>(), data.ConsumeIntegral<int>());
    for (QString *text : {&report.imageFile, &report.shapeFile, &report.imageObject, &report.shapeObject,
                          &report.initText, &report.error})
        *text = textFrom(data);
    return report;
}

/// The names in a row stand without the first four characters.
QString nameColumn(const QString &object)
{
    return object.size() < 4 ? object : object.mid(4);
}

/// The row of a report: a text that asks for a substitution takes in one of those behind it, unless
/// the row would become too long.
QByteArray expectedRow(const Converter::STBlock &report)
{
    const QString object = nameColumn(report.imageObject);
    const QString shape =
        nameColumn(report.shapeObject) == object ? QString() : nameColumn(report.shapeObject);
    QStringList columns{statusText(report.status), report.imageFile, report.shapeFile, object, shape,
                        report.initText,           report.error};
    for (QString &column : columns)
        column = withAsciiControlsEscaped(column);
    constexpr qsizetype limit = 1 << 16;
    QString row = u"%1;%2;%3;%4;%5;%6;%7"_s;
    for (const QString &column : columns) {
        const qsizetype placeHolders = row.arg(u"x"_s).size() - row.arg(QString()).size();
        if (row.arg(QString()).size() + placeHolders * column.size() >= limit)
            return columns.join(u';').toLatin1() + '\n';
        row = row.arg(column);
    }
    return row.toLatin1() + '\n';
}

void expectChangeLog(const Converter::STBlock &report)
{
    static const TestProject project;
    const QString path = project.path(u"log.csv"_s);
    QFile::remove(path);
    writeChangeLog(report, path);
    const QByteArray once = project.read(u"log.csv"_s);
    const QByteArray row = once.mid(once.indexOf('\n') + 1);
    expect(once.startsWith("Status; Image File; ") && row.endsWith('\n'), "a log has its header and a row");

    expect(std::none_of(row.begin(), row.end() - 1, [](char byte) { return byte >= 0 && byte < ' '; }),
           "no text begins a row");
    expect(row == expectedRow(report), "a row is its seven columns in Latin-1");

    writeChangeLog(report, path);
    expect(project.read(u"log.csv"_s) == once + row, "a second row follows the first");
}

void tellEverything(Presenter &presenter, const Converter::STBlock &report)
{
    const QString &text = report.error;
    presenter.showProgress(2, 1);
    presenter.showFile(report.imageFile);
    presenter.showReport(report);
    presenter.showFinding(
        {FindingKind::OtherFile, report.imageFile, text, report.initText, report.extraNumber});
    ShapeReport shape;
    shape.name = report.shapeFile;
    shape.place = report.initText;
    shape.error = text;
    presenter.showShape(shape);
    FileDiff diff;
    diff.path = diff.beforeName = diff.afterName = report.imageFile;
    diff.hunks = {{.before = {1, 1}, .after = {1, 1}, .lines = {'+' + text.toLatin1().replace('\n', ' ')}}};
    presenter.showDiff(diff);
    presenter.showLogEntry({u"error"_s, u"now"_s, text});
    CommandEnd end;
    end.command = "update"_L1;
    end.projectDir = report.imageFile;
    end.lostScreens = {{.path = report.imageFile, .backup = text}};
    end.message = text;
    presenter.showEnd(end);
}

void expectJson(const Converter::STBlock &report)
{
    const MemoryStream stream;
    Output output(stream.stream());
    JsonPresenter presenter(output, u"/plant"_s, Verbosity::Everything);
    tellEverything(presenter, report);
    const QByteArray lines = stream.written();
    expectJsonLines(lines);
    constexpr qsizetype told = 9;
    expect(lines.count('\n') == told, "each thing told is one line");
}

void expectText(const Converter::STBlock &report)
{
    const MemoryStream stream;
    const MemoryStream errorStream;
    Output output(stream.stream());
    Output errorOutput(errorStream.stream());
    TextPresenter presenter(output, errorOutput, u"/plant"_s, Verbosity::Everything);
    tellEverything(presenter, report);
    expectPlainText(stream.written());
    expectPlainText(errorStream.written());
    constexpr qsizetype complaints = 3; // the log entry, the message, the lost screen
    expect(errorStream.written().count('\n') <= complaints, "no text breaks its line");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    const Converter::STBlock report = reportFrom(data);
    expectChangeLog(report);
    expectJson(report);
    expectText(report);
    return 0;
}
