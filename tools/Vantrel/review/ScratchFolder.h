// A folder for temporary files that outlives its process only until the next one comes.
#pragma once

#include <QString>

/// A new folder in one for temporary files, which only this user may enter. It goes away with this
/// object, with all that lies in it. While the process lives the folder is locked; one that was
/// killed has left it without a lock, and the next ScratchFolder in the same place removes it.
class ScratchFolder final
{
    Q_DISABLE_COPY_MOVE(ScratchFolder)

public:
    ScratchFolder() = default;
    ~ScratchFolder();

    /// Removes those in `place` that killed processes have left. Ends between two files of them, see
    /// endIfInterrupted().
    static void removeLeftOversIn(const QString &place);

    /// Makes it in `place`, the whole path of a folder; once. Returns false where that is not possible.
    bool makeIn(const QString &place);
    /// Empty where it was not made.
    const QString &path() const { return m_path; }

private:
    QString m_path;
    int m_lock = -1;
};
