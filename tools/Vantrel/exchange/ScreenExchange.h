// Putting the converted screens of a project into the place of the original ones.
#pragma once

#include "RunArchive.h"
#include "RunRecord.h"
#include "updUtils.h"

#include <QString>
#include <QStringList>

class StageFile;
struct FoundImageFiles;

/// The end of a run: moves "scr" to "scr_bak", in place of the backup of an earlier run, and
/// "scr_temp" to "scr". What has no place then goes to the archive. Writes each stage down before
/// it begins.
class ScreenExchange final
{
public:
    /// `facts` are those of the run, and stay as long as this object.
    ScreenExchange(QString projectDir, const RunFacts &facts, const RunArchive &archive,
                   StageFile &stageFile);

    /// Puts "scr_bak" away. Returns whether it is gone; where not, a run may go on all the same.
    bool discardLastBackup();
    /// The same with a backup that this run has begun, and of which "scr" holds all screens.
    bool discardUnfinishedBackup();

    /// These do what remains from a stage on. They return whether all that "scr_temp" holds
    /// came to "scr"; where not, "scr_temp" is left alone. They stop before a stage that the
    /// stage file does not let begin.
    bool backUpAndGoOn();
    bool removeAndGoOn();
    /// `unsaved` are the screens that lie in "scr" and not in "scr_bak".
    bool copyBack(const QStringList &unsaved = {});

    /// For a run that keeps others: brings back what else lay in "scr", and screens that are not
    /// there because they could not be converted. What has no free place stays in the archive.
    void putOthersBack() const;

private:
    bool enter(RunStage stage) const;
    bool moveToImageFolder() const;
    bool copyBackAll();
    bool putAwayAsItIs() const;
    bool hasMovedScreens(const FoundImageFiles &originals) const;
    bool retryCopyBack(const FoundImageFiles &originals);
    QStringList screensInPlace() const;
    QString folder(QLatin1StringView name) const;

    QString m_projectDir;
    const RunFacts &m_facts;
    FolderCreation m_creation;
    QStringList m_unsaved;
    const RunArchive &m_archive;
    StageFile &m_stageFile;
};
