// Reading image and shape files into lines.
#include "LineReader.h"

#include <QByteArray>
#include <QFile>

#include <cstring>

namespace {

constexpr bool isBlank(char byte)
{
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

QString trimmedLine(const char *begin, const char *end)
{
    while (begin != end && isBlank(*begin))
        ++begin;
    while (begin != end && isBlank(*(end - 1)))
        --end;
    return QString::fromLatin1(begin, end - begin);
}

QStringList cutIntoLines(const QByteArray &bytes)
{
    QStringList lines;
    const char *const end = bytes.constEnd();
    for (const char *begin = bytes.constBegin(); begin != end;) {
        const auto *const separator =
            static_cast<const char *>(std::memchr(begin, '\n', static_cast<std::size_t>(end - begin)));
        const char *const lineEnd = separator == nullptr ? end : separator;
        lines.append(trimmedLine(begin, lineEnd));
        begin = separator == nullptr ? end : separator + 1;
    }
    return lines;
}

} // namespace

std::optional<QStringList> readLines(const QString &path)
{
    // Not in text mode: that drops carriage returns inside lines; those at line ends are trimmed.
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return cutIntoLines(file.readAll());
}
