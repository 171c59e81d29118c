// A conversion run over a project.
#pragma once

#include "FileConversion.h"
#include "RunRecord.h"
#include "RunReports.h"
#include "RunSummary.h"

#include <QFileInfo>
#include <QList>
#include <QString>

#include <memory>

class ProjectLock;
class RunArchive;
class StageFile;
struct FoundImageFiles;

/// Follows a run from step to step, on the run's thread.
class RunListener
{
public:
    virtual ~RunListener() = default;

    /// The image files are found, and the first is about to be converted. Returns the path of the
    /// run's change log.
    virtual QString onFound() = 0;
    /// A file is about to be converted; the number of files as `index` at the end.
    virtual void onProgress(int count, int index) = 0;
    virtual void onFile(const QString &path) = 0;
    virtual void onReport(const STBlock &report) = 0;
    /// Asked before each file.
    virtual bool isStopWanted() = 0;
};

/// Converts all image files of a project into "scr_temp", then exchanges "scr" for it. Locks the
/// project, unless its caller has, and writes down how far it is. Performed once.
class ConversionRun final
{
    Q_DISABLE_COPY_MOVE(ConversionRun)

public:
    ConversionRun(ConversionSettings settings, RunListener &listener);
    ~ConversionRun();

    /// Performs the run, unless the folder can be no project, somebody else works on it, or an interrupted
    /// run has left its stage file there.
    void perform();

    const QString &projectDir() const { return m_settings.projectDir; }

private:
    bool isNoProject() const;
    bool isInUse() const;
    bool isLeftOver() const;
    FoundImageFiles search();
    bool enterConversion(const FoundImageFiles &found);
    void end();
    void removeStageFile();
    void leaveCancelled();
    void reportHiddenFiles(const FoundImageFiles &found) const;
    bool convertImageFiles(const QList<QFileInfo> &imageFiles);
    void takeReport(const STBlock &report);
    void makeRoom(const FoundImageFiles &found) const;
    bool backUpAndCopyBack();
    void beginHistory(const RunArchive &archive);
    void endHistory(const RunArchive &archive);

    const ConversionSettings m_settings;
    RunListener &m_listener;
    RunReports m_reports;
    FileConversion m_conversion;
    std::unique_ptr<ProjectLock> m_lock; ///< null where the caller holds it, or there is nothing to hold
    RunFacts m_facts;
    RunSummary m_summary;
    bool m_isStoppedEarly = false; ///< while it looked for its files
    std::unique_ptr<StageFile> m_stageFile;
};
