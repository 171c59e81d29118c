// The shapes and icon bitmaps of a project's library.
#include "ShapeLibrary.h"

#include "Remembered.h"

#include <QFile>

using namespace Qt::StringLiterals;

bool isCatalogue(const QString &path)
{
    return path.contains(".cat"_L1);
}

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

bool ShapeLibrary::hasBitmap(const QString &fileName)
{
    return remembered(m_bitmaps, fileName, [&] {
        if (!m_bitmapFolders)
            m_bitmapFolders.emplace(m_projectDir);
        return m_bitmapFolders->contains(fileName);
    });
}
