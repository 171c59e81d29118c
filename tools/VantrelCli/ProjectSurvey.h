// What a project holds, and what a run over it would lose or could not convert.
#pragma once

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

/// Something in a project that a user should look at before a run.
struct Finding
{
    QString path;   ///< relative to the project, or whole where it lies outside
    QString text;   ///< what is the matter
    QString advice; ///< what to do
};

struct ProjectSurvey
{
    QStringList imageFiles;   ///< in the order of a run
    QSet<QString> shapeNames; ///< all that placed objects refer to, as the run compares them
    QList<Finding> obstacles; ///< what a run would lose or fail to convert
};

/// Reads a project, changing nothing. `projectDir` is absolute and clean; `makesFolders` says
/// that the run will make folders with their parents.
ProjectSurvey surveyProject(const QString &projectDir, bool makesFolders);
