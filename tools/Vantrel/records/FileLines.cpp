// The lines of an image or shape file.
#include "FileLines.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

constexpr bool isBlank(char byte)
{
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

QLatin1StringView trimmed(const char *begin, const char *end)
{
    while (begin < end && isBlank(*begin))
        ++begin;
    while (begin < end && isBlank(end[-1]))
        --end;
    return {begin, end};
}

} // namespace

FileLines::FileLines(QByteArray bytes)
    : m_bytes(std::move(bytes))
{
    const char *const file = m_bytes.constData();
    const char *const end = file + std::min<qsizetype>(m_bytes.size(), largestFile);
    m_lines.reserve(static_cast<std::size_t>(countOf('\n', QLatin1StringView(file, end - file)) + 1));
    for (const char *begin = file; begin != end;) {
        const auto *separator =
            static_cast<const char *>(std::memchr(begin, '\n', static_cast<std::size_t>(end - begin)));
        const char *const lineEnd = separator == nullptr ? end : separator;
        const QLatin1StringView line = trimmed(begin, lineEnd);
        Line entry = {};
        entry.begin = static_cast<quint32>(line.data() - file);
        entry.size = static_cast<quint32>(line.size()) & largestFile;
        entry.kind = static_cast<quint32>(RecordGrammar::kindOf(line)) & 7U;
        m_lines.push_back(entry);
        begin = separator == nullptr ? end : separator + 1;
    }
}

int FileLines::numberInFile(qsizetype index) const
{
    const char *const file = m_bytes.constData();
    return 1 + static_cast<int>(std::count(file, at(index).data(), '\n'));
}

void FileLines::removeFirst(qsizetype count)
{
    m_lines.erase(m_lines.begin(), m_lines.begin() + count);
}

FileLines FileLines::picked(const std::vector<int> &indices) const
{
    FileLines lines;
    lines.m_bytes = m_bytes;
    lines.m_lines.reserve(indices.size());
    for (const int index : indices)
        lines.m_lines.push_back(m_lines[static_cast<std::size_t>(index)]);
    return lines;
}

QStringList FileLines::toStringList() const
{
    QStringList lines;
    lines.reserve(size());
    for (qsizetype index = 0; index < size(); ++index)
        lines.append(at(index));
    return lines;
}
