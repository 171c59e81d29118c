// Reading image and shape files into lines.
#include "LineReader.h"

#include <QByteArrayView>
#include <QFile>

#include <algorithm>

namespace {

constexpr bool isBlank(char byte)
{
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

QByteArrayView trimmed(QByteArrayView line)
{
    while (!line.isEmpty() && isBlank(line.front()))
        line = line.sliced(1);
    while (!line.isEmpty() && isBlank(line.back()))
        line.chop(1);
    return line;
}

QStringList cutIntoLines(QByteArrayView bytes)
{
    QStringList lines;
    lines.reserve(std::count(bytes.begin(), bytes.end(), '\n') + 1);
    while (!bytes.isEmpty()) {
        const qsizetype lineEnd = bytes.indexOf('\n');
        const qsizetype size = lineEnd < 0 ? bytes.size() : lineEnd;
        lines.append(QString::fromLatin1(trimmed(bytes.first(size))));
        bytes = bytes.sliced(std::min(size + 1, bytes.size()));
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
