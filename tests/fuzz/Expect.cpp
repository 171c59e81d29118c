// What fuzz targets share.
#include "Expect.h"

#include <QJsonDocument>
#include <QJsonParseError>
#include <QRegularExpression>
#include <QStringDecoder>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>

#include <sanitizer/allocator_interface.h>

using namespace Qt::StringLiterals;

namespace {

std::atomic<std::size_t> allocationCount{0};
std::atomic<std::size_t> allocatedBytes{0};

void countAllocation(const volatile void * /*memory*/, std::size_t size)
{
    ++allocationCount;
    allocatedBytes += size;
}

void passOver(const volatile void * /*memory*/) {}

constexpr bool isBlank(char byte)
{
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

QByteArray trimmed(QByteArray line)
{
    while (!line.isEmpty() && isBlank(line.back()))
        line.chop(1);
    while (!line.isEmpty() && isBlank(line.front()))
        line.remove(0, 1);
    return line;
}

QString decode(const QByteArray &text)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString decoded = decoder(text);
    expect(!decoder.hasError(), "text is valid UTF-8");
    return decoded;
}

void expectNoControls(const QString &text)
{
    expect(std::none_of(text.begin(), text.end(),
                        [](QChar character) {
                            return character.category() == QChar::Other_Control && character != u'\n';
                        }),
           "text has no control characters");
}

} // namespace

void expect(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "Does not hold: %s\n", what);
    std::abort();
}

QByteArray bytesOf(const std::uint8_t *data, std::size_t size)
{
    return QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
}

QStringList linesOf(const QByteArray &file)
{
    QByteArrayList lines = file.split('\n');
    // What follows the last line end is no line.
    if (lines.last().isEmpty())
        lines.removeLast();
    QStringList texts;
    for (const QByteArray &line : std::as_const(lines))
        texts.append(QString::fromLatin1(trimmed(line)));
    return texts;
}

void expectSameLines(QStringList one, QStringList other, const char *what)
{
    std::sort(one.begin(), one.end());
    std::sort(other.begin(), other.end());
    expect(one == other, what);
}

void expectPlainText(const QByteArray &text)
{
    expectNoControls(decode(text));
}

void expectColoredText(const QByteArray &text)
{
    static const QRegularExpression colored(u"\\x1b\\[(?:1|2|31|32|33)m([^\\x1b\\n]*)\\x1b\\[0m"_s);
    expectNoControls(decode(text).replace(colored, u"\\1"_s));
}

void expectJsonLines(const QByteArray &text)
{
    expect(text.isEmpty() || text.endsWith('\n'), "every JSON line has its end");
    for (const QByteArray &line : text.split('\n')) {
        if (line.isEmpty())
            continue;
        decode(line);
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(line, &error);
        expect(error.error == QJsonParseError::NoError && document.isObject(), "each line is a JSON object");
    }
}

MemoryMeter::MemoryMeter()
    : m_allocationsBefore(allocationCount)
    , m_bytesBefore(allocatedBytes)
{
    [[maybe_unused]] static const int isHooked =
        __sanitizer_install_malloc_and_free_hooks(countAllocation, passOver);
}

std::size_t MemoryMeter::allocations() const
{
    return allocationCount - m_allocationsBefore;
}

std::size_t MemoryMeter::bytes() const
{
    return allocatedBytes - m_bytesBefore;
}
