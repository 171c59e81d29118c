// What a project holds, and what a run over it would lose or could not convert.
#pragma once

#include "Finding.h"
#include "ImageFile.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

/// Follows a survey from file to file.
class SurveyListener
{
public:
    virtual ~SurveyListener() = default;

    virtual void onFile(int count, int index, const QString &path) = 0;
    /// Called for every image file that can be converted.
    virtual void onScreen(const ImageFile &screen) = 0;
};

struct ProjectSurvey
{
    QStringList imageFiles;   ///< in the order of a run
    QSet<QString> shapeNames; ///< all that placed objects refer to, as the run compares them
    /// About the project, its folders and image files. Where a run was interrupted, without what
    /// may follow from that.
    QList<Finding> findings;
};

/// Reads a project, changing nothing. `projectDir` is absolute and clean; `makesFolders` says
/// that the run will make folders with their parents. Ends between two files, see endIfInterrupted().
ProjectSurvey surveyProject(const QString &projectDir, bool makesFolders, SurveyListener *listener = nullptr);

/// Whether placed objects of this kind are replaced where their shape is chosen.
bool refersToShape(const STBlock &object);
