// The command that compares a project's screens with their backup.
#include "DiffCommand.h"

#include "FindingCode.h"
#include "ImageFileSearch.h"
#include "LeftOverFinding.h"
#include "Presenter.h"
#include "ProjectPath.h"
#include "ShownDiffs.h"

#include <QFileInfo>
#include <QSet>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

struct Screens
{
    QStringList paths;       ///< below the project
    QList<Finding> findings; ///< why there may be more
};

Screens screensBelow(const QString &projectDir, const QString &folder)
{
    const FoundImageFiles found = searchImageFiles(projectDir + folder);
    Screens screens;
    for (const QFileInfo &file : found.files)
        screens.paths.append(file.filePath().sliced(projectDir.size()));
    for (const ListingFailure &failure : found.failures) {
        screens.findings.append({FindingKind::FolderUnreadable, relativeTo(projectDir, failure.folder),
                                 u"it could not be listed: %1"_s.arg(failure.reason),
                                 u"make it readable, or take the links away that lead to it"_s});
    }
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
Screens screensToCompare(const QString &projectDir)
{
    Screens screens = screensBelow(projectDir, u"/scr"_s);
    const QSet<QString> present(screens.paths.cbegin(), screens.paths.cend());
    const Screens backups = screensBelow(projectDir, u"/scr_bak"_s);
    for (const QString &backup : backups.paths) {
        if (const QString screen = outOfBackup(backup); !present.contains(screen))
            screens.paths.append(screen);
    }
    screens.findings += backups.findings;
    return screens;
}

/// What keeps screens from being compared, or from being what a run has made of them.
QList<Finding> findingsAbout(const QString &projectDir)
{
    QList<Finding> findings = findRunUnderWay(projectDir);
    if (findings.isEmpty())
        findings = findLeftOverRun(projectDir);
    // Such a run takes folders away and brings them back.
    if (!findings.isEmpty())
        return findings;
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

/// Whether there is anything to compare: what an interrupted run has left is of interest, too.
bool areComparable(const QList<Finding> &findings)
{
    return std::all_of(findings.cbegin(), findings.cend(),
                       [](const Finding &finding) { return finding.kind == FindingKind::RunInterrupted; });
}

/// Compares and shows them; returns how many there were.
int compareScreens(const QString &projectDir, const QStringList &screens, ScreenDiffs &diffs,
                   Presenter &presenter)
{
    const auto count = static_cast<int>(screens.size());
    for (int index = 0; index < count; ++index) {
        const QString &screen = screens.at(index);
        const QString backup = inBackup(screen);
        presenter.showProgress(count, index);
        presenter.showFile(projectDir + screen);
        show(diffs.compare(screen.sliced(1), {projectDir + backup, backup.sliced(1)},
                           {projectDir + screen, screen.sliced(1)}),
             presenter);
    }
    return count;
}

} // namespace

ExitCode runDiff(const QString &projectDir, Presenter &presenter)
{
    QList<Finding> findings = findingsAbout(projectDir);
    for (const Finding &finding : std::as_const(findings))
        presenter.showFinding(finding);

    const Screens screens = areComparable(findings) ? screensToCompare(projectDir) : Screens();
    for (const Finding &finding : screens.findings)
        presenter.showFinding(finding);
    ScreenDiffs diffs;
    const int count = compareScreens(projectDir, screens.paths, diffs, presenter);
    presenter.showProgress(count, count);
    // One that has begun meanwhile has moved what was compared.
    if (findings.isEmpty()) {
        findings = findRunUnderWay(projectDir);
        for (const Finding &finding : std::as_const(findings))
            presenter.showFinding(finding);
    }

    CommandEnd end;
    end.command = "diff"_L1;
    end.projectDir = projectDir;
    end.exitCode = exitCodeOf(findings + screens.findings);
    if (diffs.changedFiles() > 0)
        end.exitCode = weightier(end.exitCode, ExitCode::Different);
    if (diffs.unreadableFiles() > 0)
        end.exitCode = weightier(end.exitCode, ExitCode::Refused);
    end.counts = QList<CountValue>{{Count::Files, count}} + countsOf(diffs);
    presenter.showEnd(end);
    return end.exitCode;
}
