// The file that says how far a run came.
#pragma once

#include "RunRecord.h"
#include "RunSummary.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// What to do where the file cannot be written.
enum class IfUnwritable {
    GoOnWhereProtected, ///< without it, where nobody may write into the project; else as Stop
    Stop,               ///< and keep it: what it tells of can be repeated
};

/// Writes ".vantrel.run" of a project while something is under way there that another process
/// may have to finish or to take back. A file that an interruption left stays until a process
/// writes or removes it; this object's end leaves it alone.
class StageFile final
{
public:
    StageFile(QString projectDir, const RunFacts &facts,
              IfUnwritable ifUnwritable = IfUnwritable::GoOnWhereProtected);

    /// Writes down what begins now, on the disk when this returns. Returns whether it may begin.
    bool enter(const RunState &state);
    /// The stages that were entered, and when.
    const QList<StageTime> &entered() const { return m_entered; }
    /// Removes the file: nothing is under way any more. Returns whether it is gone.
    bool remove();
    /// Why enter() said no or remove() failed, an errno; 0 where neither did.
    int error() const { return m_error; }
    /// That as a sentence without a full stop.
    QString errorText() const;
    /// Whether stages are written down; no where the project is protected and the run goes on without.
    bool isUsable() const { return m_isUsable; }

    static QString path(const QString &projectDir);
    /// Whether there is one, readable or not; also yes where the disk gives no answer.
    static bool exists(const QString &projectDir);
    /// Whether there is one that tells of a run which did not come to its end, or that cannot be
    /// understood. A run that was completed or cancelled needs nothing any more.
    static bool tellsOfInterruption(const QString &projectDir);
    /// Removes the beginning of one that an interruption of its writing left beside it.
    static void removeUnfinished(const QString &projectDir);
    /// What it says; nothing where there is none, or none that can be understood.
    static std::optional<RunRecord> read(const QString &projectDir);

private:
    QString m_projectDir;
    QByteArray m_factLines;
    IfUnwritable m_ifUnwritable;
    QList<StageTime> m_entered;
    bool m_isUsable = true;
    int m_error = 0;
};
