// Names that come from files, fit to be shown.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

/// Text with the characters spelt out that a reader would not see: controls, which act on a terminal, those
/// that turn the direction of the text behind them, and those without a shape. So a name can neither break a
/// line nor pass for another:  "a<newline>b"  ->  "a\nb"
QString escaped(QStringView text);

/// The same for a line of JSON, which keeps its meaning:  "a<right-to-left mark>"  ->  "a\u200f"
QByteArray escapedJson(const QByteArray &line);

/// The same for the control characters of ASCII alone. For text that becomes bytes again: what Latin-1
/// takes for further control characters may be letters of another encoding.
QString withAsciiControlsEscaped(const QString &text);
