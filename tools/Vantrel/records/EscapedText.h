// Names that come from files, fit to be shown.
#pragma once

#include <QString>

/// Text with its control characters, and those that turn its direction, spelt out, so that a name can neither
/// break a line nor reach the terminal's controls:  "a<newline>b"  ->  "a\nb"
QString escaped(QStringView text);

/// The same for the control characters of ASCII alone. For text that becomes bytes again: what Latin-1
/// takes for further control characters may be letters of another encoding.
QString withAsciiControlsEscaped(const QString &text);
