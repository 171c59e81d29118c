// The folder in which a project keeps what its last runs have displaced.
#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

/// How many bytes the disk must have room for where a run over image files of so many bytes begins:
/// they lie there twice more, converted and, where they cannot be renamed, as a backup.
constexpr qint64 bytesForRun(qint64 imageBytes)
{
    return 2 * imageBytes;
}

struct HistorySize
{
    qsizetype files = 0;
    qint64 bytes = 0;
};

/// ".vantrel.history" of a project: a folder for each run, named by the time at which the run began.
///     .vantrel.history/2026-03-05_14-07-09/run.json   what the run did, see RunSummary
///     .vantrel.history/2026-03-05_14-07-09/scr_bak    the backup of the run before
///     .vantrel.history/2026-03-05_14-07-09/scr        what it left of "scr": all but the screens
/// Hidden, so that no search for screens or bitmaps enters it. Whoever changes it holds the
/// project's lock.
class RunHistory final
{
public:
    /// How many runs are kept where nobody says otherwise.
    static constexpr int usualRuns = 3;

    explicit RunHistory(QString projectDir);

    /// The names of what is kept, the newest first.
    QStringList entries() const;
    /// The same; clears `isWhole` where they could not be read.
    QStringList entries(bool &isWhole) const;

    /// Whether an entry is that of a run, or of nobody knows what.
    bool isRun(const QString &entry) const;

    /// The newest that is of a run; empty where there is none.
    QString newestRun() const;
    /// The same; clears `isWhole` where that is not known.
    QString newestRun(bool &isWhole) const;

    /// A name for what begins now. It sorts behind all others, also where the clock was set back.
    QString nameFor(const QDateTime &begin) const;

    /// Makes the folder of an entry, with the rights of "scr". Returns what went wrong; empty
    /// where it is there.
    QString make(const QString &entry) const;

    /// Why nothing could be kept, as far as that can be told without trying; empty where it could.
    QString obstacle() const;

    /// Removes an entry: at once from the history, then from the disk. What an interruption leaves
    /// of it goes with the next one. Returns what went wrong.
    QString remove(const QString &entry) const;

    /// Removes all that is older than the newest runs. Returns what went wrong with the first that
    /// stays.
    QString keepNewest(int mostRuns) const;

    /// What all of it takes, or one of its entries.
    HistorySize sizeOf(const QString &entry = {}) const;

    /// Path of an entry, or of what lies in it: pathOf("2026-03-05_14-07-09", "scr_bak").
    QString pathOf(const QString &entry, const QString &name = {}) const;

private:
    bool isHollow(const QString &entry) const;

    QString m_projectDir;
    QString m_root;
};
