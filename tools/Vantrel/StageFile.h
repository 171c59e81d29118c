// The file that says how far a run came.
#pragma once

#include "RunRecord.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// Writes ".vantrel.run" of a project while something is under way there that another process
/// may have to finish or to take back. A file that an interruption left stays until a process
/// writes or removes it; this object's end leaves it alone.
class StageFile final
{
public:
    StageFile(const QString &projectDir, const RunFacts &facts);

    /// Writes down what begins now, on the disk when this returns. Where that cannot be done the
    /// file is removed instead: none is better than one that tells of an earlier stage.
    void enter(const RunState &state);
    /// Writes down what begins now where the file tells what led to it. Where that cannot be done
    /// the file is left as it is, errno tells why, and what was to begin must not.
    bool replace(const RunState &state) const;
    /// Removes the file: nothing is under way any more. Returns whether it is gone.
    bool remove();

    static QString path(const QString &projectDir);
    /// Whether there is one, readable or not.
    static bool exists(const QString &projectDir);
    /// What it says; nothing where there is none, or none that can be understood.
    static std::optional<RunRecord> read(const QString &projectDir);

private:
    bool write(const QByteArray &text) const;

    QByteArray m_folder;
    QByteArray m_path;
    QByteArray m_factLines;
    bool m_isUsable = true;
};
