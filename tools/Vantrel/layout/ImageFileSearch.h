// Finding the image files below a folder, and what hides some of them.
#pragma once

#include <QByteArray>
#include <QFileInfo>
#include <QList>
#include <QString>

struct ListingFailure
{
    QString folder;
    QString reason; ///< in the system's words, or why it was not tried
};

struct FoundImageFiles
{
    QList<QFileInfo> files; ///< depth first, by name ignoring case
    /// Whole paths of image files that no text can name, since they are not valid UTF-8.
    QList<QByteArray> unnamable;
    QList<ListingFailure> failures; ///< folders that were not read, or not to their end

    /// Whether `files` are all that there are.
    bool isWhole() const { return unnamable.isEmpty() && failures.isEmpty(); }
};

/// Finds the image files below a folder: every file that is not hidden and whose whole path
/// contains ".psc". Follows links to folders, but never enters a folder that it is already
/// inside of. A missing folder holds nothing. Where links lead to more than mostFoldersOverLinks
/// folders, the first of those that are left out is a failure; what is reached without links is
/// found all the same. Ends between two folders, see endIfInterrupted().
FoundImageFiles searchImageFiles(const QString &folder);

/// Logs each folder that could not be listed, with the reason.
void logFailures(const FoundImageFiles &found);
/// What is logged and reported of it.
QString messageOf(const ListingFailure &failure);

/// A path that is not valid UTF-8 as it is shown: its odd bytes spelt out, "pump\xe4.psc".
QString shownPath(const QByteArray &path);
