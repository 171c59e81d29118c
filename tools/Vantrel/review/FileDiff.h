// What differs between two versions of a file, line by line.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

/// A part of a file in which lines differ, with the lines around them.
struct DiffHunk
{
    /// A run of lines as a unified diff counts them: the first has the number 1; an empty run
    /// has the number of the line before it.
    struct Lines
    {
        qsizetype start = 0;
        qsizetype count = 0;
    };

    Lines before;
    Lines after;
    QList<QByteArray> lines; ///< each behind ' ', '-' or '+', without line end; see noLineEndMark
};

/// Stands in a hunk behind a line that has no line end.
inline constexpr char noLineEndMark[] = "\\ No newline at end of file";

struct FileDiff
{
    enum class Change { Changed, Added, Removed };

    QString path;       ///< of the file, relative to the project
    QString beforeName; ///< "/dev/null" for an added file
    QString afterName;  ///< "/dev/null" for a removed one
    Change change = Change::Changed;
    qsizetype addedLines = 0;
    qsizetype removedLines = 0;
    QList<DiffHunk> hunks; ///< none where an empty file was added or removed
};

/// A version of a file; one that does not exist is a file that is added or removed.
struct FileVersion
{
    QString path;
    QString shownName;
};

/// How two versions of a file differ.
struct FileComparison
{
    bool isReadable = true;
    std::optional<FileDiff> diff; ///< nothing where they are equal, byte for byte
};

FileComparison compareFiles(const QString &shownPath, const FileVersion &before, const FileVersion &after);

/// The hunks that lead from one content to the other.
QList<DiffHunk> hunksBetween(const QByteArray &before, const QByteArray &after);

/// "@@ -1,3 +1,4 @@"
QString hunkHeader(const DiffHunk &hunk);
/// The word for a change in JSON.
QLatin1StringView changeName(FileDiff::Change change);
