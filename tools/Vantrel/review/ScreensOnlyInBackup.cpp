// Screens of which the backup of the last run holds the only copy.
#include "ScreensOnlyInBackup.h"

#include "ImageFileSearch.h"

#include <QFileInfo>
#include <QSet>

using namespace Qt::StringLiterals;

QList<Finding> findScreensOnlyInBackup(const QString &projectDir, const QStringList &imageFiles)
{
    const QString folder = projectDir + "/scr_bak"_L1;
    // What a link leads to is not the project's.
    if (QFileInfo(folder).isSymLink())
        return {};
    const QSet<QString> present(imageFiles.cbegin(), imageFiles.cend());
    QList<Finding> findings;
    const FoundImageFiles found = searchImageFiles(folder);
    for (const QFileInfo &file : found.files) {
        const QString backup = file.filePath().sliced(projectDir.size());
        // A run puts the backup's name in wherever "/scr" stands in a path.
        QString screen = backup;
        screen.replace("/scr_bak"_L1, "/scr"_L1);
        if (present.contains(projectDir + screen))
            continue;
        findings.append({FindingKind::ScreenOnlyInBackup, backup.sliced(1),
                         u"this screen is not in \"scr\", and a run would set \"scr_bak\" aside"_s,
                         u"copy it to \"%1\", or move it to a folder of your own"_s.arg(screen.sliced(1))});
    }
    return findings;
}
