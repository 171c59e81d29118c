// A stand-in for a project, on which a run can be tried.
#pragma once

#include "ScratchFolder.h"

#include <QString>

/// Makes the project directory again below a new folder outside the project, with its whole
/// path, since parts of a project's path have a meaning to a run. The screens are links to the
/// project's own, in folders of the stand-in's own; the library and all else is reached by
/// links; a left-over "scr_temp" is copied, since a run writes to it. There is no "log" folder.
/// What a run writes, moves and removes here never reaches the project. Goes away with this
/// object; see ScratchFolder.
class ScratchProject final
{
    Q_DISABLE_COPY_MOVE(ScratchProject)

public:
    /// May end before it is made, see endIfInterrupted(); nothing of it is left then.
    explicit ScratchProject(QString projectDir);

    /// Removes the stand-ins of processes that were killed. Ends between two files of them, see
    /// endIfInterrupted().
    static void removeLeftOvers();

    bool isReady() const { return m_error.isEmpty(); }
    /// Why it could not be made.
    const QString &error() const { return m_error; }

    /// What stands before the project directory in the stand-in's path. Its name is lower case
    /// and holds nothing else that a run would read a meaning into.
    const QString &root() const { return m_folder.path(); }
    QString dir() const { return root() + m_projectDir; }

private:
    void makeRoot();
    void fill();

    QString m_projectDir;
    ScratchFolder m_folder;
    QString m_error;
};
