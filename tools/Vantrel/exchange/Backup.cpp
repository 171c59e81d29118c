// Completing the backup of a project's image files.
#include "Backup.h"

#include "FileComparison.h"
#include "FileIo.h"
#include "RootFolder.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool backUp(const QString &original, const RootFolder &root, const QString &place)
{
    if (haveSameContent(original, place))
        return true;
    // What lies there is no copy of the original: a partial one, or that of an earlier run.
    root.removeFile(place);
    root.makeFolder(QFileInfo(place).path(), FolderCreation::WithParents);
    return copyFile(original, root, place) == 0 && haveSameContent(original, place);
}

} // namespace

bool completeBackup(const QList<QFileInfo> &originals, const QString &projectDir)
{
    const RootFolder root(projectDir);
    return std::all_of(originals.begin(), originals.end(), [&](const QFileInfo &original) {
        QString place = original.filePath().sliced(projectDir.size());
        place.replace("/scr"_L1, "/scr_bak"_L1);
        return backUp(original.filePath(), root, projectDir + place);
    });
}
