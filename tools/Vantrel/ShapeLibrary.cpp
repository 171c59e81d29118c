// The shapes and icon bitmaps of a project's library.
#include "ShapeLibrary.h"

#include "LineReader.h"
#include "RecordGrammar.h"
#include "updUtils.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace {

ShapeLibrary::ShapeFile readShapeFile(const QString &path)
{
    if (path.contains(".cat"_L1))
        return {};
    std::optional<QStringList> lines = readLines(path);
    if (!lines)
        return {};

    const auto firstSection = std::find_if(lines->cbegin(), lines->cend(), [](const QString &line) {
        return hasTag(line, RecordGrammar::sectionTag);
    });
    if (firstSection == lines->cend())
        return {.readable = true, .lines = {}};
    const qsizetype header = firstSection - lines->cbegin();
    return {.readable = true, .lines = lines->sliced(header), .firstSectionLine = static_cast<int>(header)};
}

/// The answer that `answers` holds for `key`; asks for it the first time.
template <typename Answer, typename Ask>
const Answer &remembered(QHash<QString, Answer> &answers, const QString &key, Ask ask)
{
    auto answer = answers.find(key);
    if (answer == answers.end())
        answer = answers.insert(key, ask());
    return *answer;
}

} // namespace

ShapeLibrary::ShapeLibrary(QString projectDir)
    : m_projectDir(std::move(projectDir))
{
}

QString ShapeLibrary::path(const QString &shapeFile)
{
    return remembered(m_paths, shapeFile, [&] {
        const QString path = u"%1/mac/%2"_s.arg(m_projectDir, shapeFile);
        return QFile::exists(path) ? path : u"%1/mac/vlo/%2"_s.arg(m_projectDir, shapeFile);
    });
}

const ShapeLibrary::ShapeFile &ShapeLibrary::shape(const QString &path)
{
    return remembered(m_shapes, path, [&] { return readShapeFile(path); });
}

bool ShapeLibrary::hasBitmap(const QString &fileName)
{
    return remembered(m_bitmaps, fileName, [&] {
        bool found = false;
        updUtils::findFileInBmpFolders(m_projectDir, fileName, found);
        return found;
    });
}
