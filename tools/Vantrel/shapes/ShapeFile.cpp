// Reading shape files.
#include "ShapeFile.h"

#include "FileIo.h"
#include "ShapeLibrary.h"

using namespace Qt::StringLiterals;

namespace {

ShapeFile fromFirstSection(FileLines lines)
{
    int first = 0;
    while (first < lines.size() && lines.kindAt(first) != RecordGrammar::LineKind::Section)
        ++first;
    const int offset = first < lines.size() ? first : -1;
    lines.removeFirst(first);
    return {std::move(lines), offset};
}

} // namespace

std::optional<ShapeFile> readShapeFile(const QString &path, QString &errorText)
{
    const std::optional<FileContent> content = isCatalogue(path) ? std::nullopt : readFile(path);
    if (!content) {
        errorText = u"Could not open Shape File"_s;
        return std::nullopt;
    }
    return fromFirstSection(FileLines(content->bytes));
}
