// The steps that lead from one list of lines to another.
#pragma once

#include <QByteArray>

#include <vector>

/// One sign for each line that is kept (' '), removed ('-') or added ('+'), with numbers for lines:
///     {1, 2, 3}, {1, 4, 3}  ->  " -+ "
/// As few lines change as can be, for some thousand differences; more are found piece by piece.
/// Where mostEditPoints are not enough, what is left of both lists is removed and added; so are
/// lists of which one has some million lines more than the other. Ends
/// between two pieces, see endIfInterrupted().
QByteArray editScript(const std::vector<int> &before, const std::vector<int> &after);
