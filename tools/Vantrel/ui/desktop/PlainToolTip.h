// Tool tips that show a text as it is.
#pragma once

#include <QString>

/// A text as a tool tip shows it unchanged. A tool tip takes a text for rich text if it looks like
/// it; a file name may.
QString asToolTip(const QString &text);
