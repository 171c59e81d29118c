// How much is taken in at once.
#pragma once

#include <QtGlobal>

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
