// The files of "scr" as they were before a run, wherever they lie now.
#pragma once

#include "RootFolder.h"
#include "RunHistory.h"

#include <QList>
#include <QString>
#include <QStringList>

/// A file that lay in "scr".
struct EarlierFile
{
    QString name; ///< its path below "scr"
    QString path; ///< where it lies now
    bool isScreen = false;
};

/// Looks at what an entry of a project's history and the backup hold, and brings it back. Whoever
/// restores holds the project's lock.
class EarlierFiles final
{
public:
    /// Finds the files as they were before the run of this entry, or those that an undoing or a
    /// restoring has replaced.
    EarlierFiles(const QString &projectDir, const QString &entry);

    const QList<EarlierFile> &files() const { return m_files; }
    /// Folders that could not be read, and names that are no text: they stay in the history.
    const QStringList &unreadable() const { return m_unreadable; }
    const EarlierFile *find(const QString &name) const;

    /// Puts a file into its place in "scr", as old as it was. What lies there and differs is copied
    /// into a new entry of the history first. Returns what went wrong; empty where the file is there.
    QString restore(const EarlierFile &file);

    /// How many files were not as they had been.
    int restoredFiles() const { return m_restoredFiles; }
    /// The entry with what was replaced; empty where nothing was.
    const QString &replacedEntry() const { return m_replacedEntry; }

private:
    enum class Names { AsInBackup, AsTheyAre };

    void addRun();
    void addFolder(const QString &folder, Names names);
    QString setAside(const QString &place, const QString &name);

    QString m_projectDir;
    RootFolder m_root;
    RunHistory m_history;
    QString m_entry;
    QList<EarlierFile> m_files;
    QStringList m_unreadable;
    QString m_replacedEntry;
    int m_restoredFiles = 0;
};
