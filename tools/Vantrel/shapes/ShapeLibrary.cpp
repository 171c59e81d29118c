// The shapes and icon bitmaps of a project's library.
#include "ShapeLibrary.h"

#include "FolderListing.h"
#include "Remembered.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

bool isCatalogue(const QString &path)
{
    return path.contains(".cat"_L1);
}

QStringList shapeFilesIn(const QString &folder)
{
    const OpenFolder opened(QFile::encodeName(folder));
    if (!opened.isOpen())
        return {};
    QStringList paths;
    for (const FolderEntry &entry : opened.list().entries) {
        const QString name = QFile::decodeName(entry.name);
        const QString path = joinedPath(folder, name);
        const bool isShape =
            name.endsWith(".plb"_L1, Qt::CaseInsensitive) || name.endsWith(".lib"_L1, Qt::CaseInsensitive);
        if (isShape && !name.startsWith(u'.') && QFileInfo(path).isFile())
            paths.append(path);
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

ShapeLibrary::ShapeLibrary(QString projectDir)
    : m_projectDir(std::move(projectDir))
{
}

QString ShapeLibrary::path(const QString &shapeFile)
{
    return remembered(m_paths, shapeFile, [&] {
        const QString path = u"%1/mac/%2"_s.arg(m_projectDir, shapeFile);
        return QFileInfo::exists(path) ? path : u"%1/mac/vlo/%2"_s.arg(m_projectDir, shapeFile);
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
