// The names of the shape files that a project's screens refer to.
#include "FilterNames.h"

#include "RecordFields.h"

#include <QByteArray>
#include <QFile>

#include <algorithm>
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
    // Not in text mode: that drops carriage returns inside lines; those at line ends are trimmed.
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QByteArray content = file.readAll();
    const std::string_view bytes(content.constData(), static_cast<std::size_t>(content.size()));

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
