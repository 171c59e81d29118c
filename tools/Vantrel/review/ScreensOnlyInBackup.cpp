// Screens of which the backup of the last run holds the only copy.
#include "ScreensOnlyInBackup.h"

#include "ImageFileSearch.h"
#include "RunHistory.h"

#include <QFileInfo>
#include <QSet>

using namespace Qt::StringLiterals;

namespace {

/// A folder with screens from before a run, as a user reads its path.
struct Keeper
{
    QString path;
    QString name;
    QString danger; ///< why a screen in it should be looked at before a run
};

/// A run puts the backup's name in wherever "/scr" stands in a path.
QString nameInScreens(const QString &pathInBackup)
{
    QString name = "/scr_bak"_L1 + pathInBackup;
    return name.replace("/scr_bak"_L1, "/scr"_L1).sliced(1);
}

QList<Keeper> keepersOf(const QString &projectDir)
{
    QList<Keeper> keepers{{projectDir + "/scr_bak"_L1, u"scr_bak"_s, u"a run would set \"scr_bak\" aside"_s}};
    const RunHistory history(projectDir);
    if (const QString entry = history.newestRun(); !entry.isEmpty()) {
        keepers.append({history.pathOf(entry, u"scr_bak"_s), u".vantrel.history/%1/scr_bak"_s.arg(entry),
                        u"only the history keeps it, for the next runs"_s});
    }
    return keepers;
}

} // namespace

QList<Finding> findScreensOnlyInBackup(const QString &projectDir, const QStringList &imageFiles)
{
    QSet<QString> known(imageFiles.cbegin(), imageFiles.cend());
    QList<Finding> findings;
    for (const Keeper &keeper : keepersOf(projectDir)) {
        // What a link leads to is not the project's.
        if (QFileInfo(keeper.path).isSymLink())
            continue;
        const FoundImageFiles found = searchImageFiles(keeper.path);
        for (const QFileInfo &file : found.files) {
            const QString inKeeper = file.filePath().sliced(keeper.path.size());
            const QString screen = nameInScreens(inKeeper);
            const QString place = projectDir + u'/' + screen;
            if (known.contains(place))
                continue;
            known.insert(place);
            findings.append({FindingKind::ScreenOnlyInBackup, keeper.name + inKeeper,
                             u"this screen is not in \"scr\", and %1"_s.arg(keeper.danger),
                             u"copy it to \"%1\", or move it to a folder of your own"_s.arg(screen)});
        }
    }
    return findings;
}
