// How much is taken in at once.
#pragma once

#include <QtGlobal>

/// The most bytes of a file that is read whole, far beyond any screen or shape. Offsets of its lines
/// fit 29 bits.
inline constexpr qint64 largestFile = (qint64{1} << 29) - 1;
