// Where one run puts what it displaces.
#pragma once

#include "RunHistory.h"

#include <QString>

struct RunSummary;

/// The entry of one run in the project's history. What the run has no place for any more is moved
/// there by renaming it; where that cannot be done, it is removed, which the log tells before.
class RunArchive final
{
public:
    /// `entry` is a name that RunHistory has given. Where it is empty, nothing is kept.
    RunArchive(QString projectDir, QString entry);

    /// Makes the entry's folder, unless the project has no folder that a run could displace. Where it
    /// cannot be made, says so in the log and keeps nothing.
    void open();

    /// Moves a folder of the project into the entry, under the first free name: "scr", "scr.2".
    /// Returns whether it is gone from its place; where nothing lies there, too.
    bool putAway(const QString &folder) const { return putAway(folder, folder); }
    bool putAway(const QString &folder, const QString &name) const;

    /// The same, but what cannot be kept stays where it is.
    bool keep(const QString &folder) const;

    /// Writes down what the run has done so far. What goes wrong is logged.
    void write(const RunSummary &summary) const;

    bool isKeeping() const { return !m_entry.isEmpty(); }
    const QString &entry() const { return m_entry; }

private:
    bool hasSomethingToKeep() const;
    int moveAway(const QString &folder, const QString &name) const;

    QString m_projectDir;
    RunHistory m_history;
    QString m_entry;
};
