// The command that compares a project's screens with their backup.
#include "DiffCommand.h"

#include "Presenter.h"
#include "ProjectPath.h"
#include "ShownDiffs.h"
#include "updUtils.h"

#include <QFileInfo>
#include <QSet>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

QStringList screensBelow(const QString &projectDir, const QString &folder)
{
    QList<QFileInfo> files;
    updUtils::findImageFiles(projectDir + folder, files);
    QStringList screens;
    for (const QFileInfo &file : std::as_const(files))
        screens.append(file.filePath().sliced(projectDir.size()));
    return screens;
}

/// Every part of a path that begins with the folder's name changes, as it did in the backup.
QString inBackup(QString screen)
{
    return screen.replace("/scr"_L1, "/scr_bak"_L1);
}

QString outOfBackup(QString backup)
{
    return backup.replace("/scr_bak"_L1, "/scr"_L1);
}

/// The screens in their order, then those that only the backup holds.
QStringList screensToCompare(const QString &projectDir)
{
    QStringList screens = screensBelow(projectDir, u"/scr"_s);
    const QSet<QString> present(screens.cbegin(), screens.cend());
    for (const QString &backup : screensBelow(projectDir, u"/scr_bak"_s)) {
        if (const QString screen = outOfBackup(backup); !present.contains(screen))
            screens.append(screen);
    }
    return screens;
}

/// The folders that are needed and do not exist.
QList<Finding> missingFolders(const QString &projectDir)
{
    QList<Finding> findings;
    if (!QFileInfo(projectDir + "/scr"_L1).isDir()) {
        findings.append({FindingKind::FolderMissing, u"scr"_s, u"there is no such folder"_s,
                         u"choose a project directory, which holds \"scr\""_s});
    }
    if (!QFileInfo(projectDir + "/scr_bak"_L1).isDir()) {
        findings.append({FindingKind::BackupMissing, u"scr_bak"_s, u"there is no such folder"_s,
                         u"compare after a run, which makes it"_s});
    }
    return findings;
}

} // namespace

ExitCode runDiff(const QString &projectDir, Presenter &presenter)
{
    const QList<Finding> missing = missingFolders(projectDir);
    for (const Finding &finding : missing)
        presenter.showFinding(finding);

    const QStringList screens = missing.isEmpty() ? screensToCompare(projectDir) : QStringList();
    const auto count = static_cast<int>(screens.size());
    ScreenDiffs diffs;
    for (int index = 0; index < count; ++index) {
        const QString &screen = screens.at(index);
        const QString backup = inBackup(screen);
        presenter.showProgress(count, index);
        presenter.showFile(projectDir + screen);
        show(diffs.compare(screen.sliced(1), {projectDir + backup, backup.sliced(1)},
                           {projectDir + screen, screen.sliced(1)}),
             presenter);
    }
    presenter.showProgress(count, count);

    CommandEnd end;
    end.command = "diff"_L1;
    end.projectDir = projectDir;
    end.exitCode = missing.isEmpty() && diffs.areEqual() ? ExitCode::Done : ExitCode::DoneWithFindings;
    end.counts = QList<CountValue>{{Count::Files, count}} + countsOf(diffs);
    presenter.showEnd(end);
    return end.exitCode;
}
