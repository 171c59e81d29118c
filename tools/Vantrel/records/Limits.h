// How much is taken in, followed, compared or kept waiting, at most.
#pragma once

#include <QtGlobal>

#include <cstddef>

/// The most bytes of a file that is read whole, far beyond any screen or shape. Offsets of its lines
/// fit 29 bits.
inline constexpr qint64 largestFile = (qint64{1} << 29) - 1;

/// The most bytes of the file that says how far a run came: 100,000 screens with paths of 300 bytes, each
/// named twice. Read, its lines take several times the room. A larger one was not written by a run, and
/// cannot be understood.
inline constexpr qint64 largestStageFile = qint64{1} << 26;

/// The most bytes of it when a run begins, because each of its screens may be named once more in a later
/// stage. A run that would need more is not started.
inline constexpr qint64 largestFirstStage = largestStageFile / 2;

/// The most bytes of a lock, which holds a few names of at most 255 bytes. A larger file is no lock.
inline constexpr qint64 largestLock = qint64{1} << 12;

/// The most bytes of a list of shapes: 16 MiB, a million names. A longer one is refused.
inline constexpr qint64 largestShapeList = qint64{1} << 24;

/// How many folders one search enters over links, and below them. Links that lead to each other
/// make more paths than anybody could walk, and one link may lead to all of a system's folders.
/// A search that meets more says so, and counts as one that could not list a folder. Folders that no link
/// leads to are not counted: their depth ends where the system takes no longer path.
inline constexpr int mostFoldersOverLinks = 1000;

/// A row of the change log whose place holders are filled has fewer characters than this. With place holders
/// in each of its fields, some hundred characters would become a row of many megabytes. A longer one is
/// written with its fields as they stand, and the log says so.
inline constexpr qsizetype longestFilledRow = qsizetype{1} << 16;

/// Bounds the time of one comparison: some 25,000 lines that all differ, or any number that are
/// equal. Far more than what a run changes in one screen. What is left is shown as replaced.
inline constexpr std::size_t mostEditPoints = 50'000'000;

/// Bounds the memory of one comparison, which goes on piece by piece. There is one point at least for each
/// line that the longer list has more.
inline constexpr int mostEditPointsOfPiece = 2'000'000;

/// What a run has told and no command has shown yet. A run is faster than what prints its news, and has a
/// million of them at times. It waits while as many wait.
inline constexpr std::size_t mostNewsWaiting = std::size_t{1} << 16;

/// How many reports a run may be ahead of the window before it waits. Measured: what the window shows in one
/// turn, painting once, without keeping its user waiting.
inline constexpr int mostReportsAhead = 600;

/// The same for entries of the log, each of which takes the window longer.
inline constexpr std::size_t mostLogEntriesAhead = 64;
