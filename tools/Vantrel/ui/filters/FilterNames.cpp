// The names of the shape files that a project's screens refer to.
#include "FilterNames.h"

#include "FileIo.h"
#include "RecordFields.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace {

constexpr std::string_view tag("LIB");

/// What is trimmed from lines, but for the line end.
constexpr std::string_view blanks(" \t\v\f\r");

/// Whether nothing but blanks stands before a place in its line.
bool beginsLine(std::string_view bytes, std::size_t place)
{
    const std::size_t before = bytes.substr(0, place).find_last_not_of(blanks);
    return before == std::string_view::npos || bytes[before] == '\n';
}

/// The line from a place on, without blanks at its end.
QString lineFrom(std::string_view bytes, std::size_t place)
{
    const std::size_t end = std::min(bytes.find('\n', place), bytes.size());
    const std::size_t last = bytes.substr(0, end).find_last_not_of(blanks);
    return QString::fromLatin1(bytes.data() + place, static_cast<qsizetype>(last + 1 - place));
}

} // namespace

void collectFilterNames(const QString &path, QSet<QString> *names)
{
    const std::optional<FileContent> content = readFile(path);
    if (!content)
        return;
    const std::string_view bytes(content->bytes.constData(), static_cast<std::size_t>(content->bytes.size()));

    // Few lines have the tag: looking for it costs less than looking at every line.
    for (std::size_t place = bytes.find(tag); place != std::string_view::npos;
         place = bytes.find(tag, place + tag.size())) {
        if (!beginsLine(bytes, place))
            continue;
        const QString line = lineFrom(bytes, place);
        const QStringView name = fieldAt(line, 1);
        if (!name.isEmpty())
            names->insert(name.toString());
    }
}
