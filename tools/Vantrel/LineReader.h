// Reading image and shape files into lines.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// Reads a file into its lines, one entry for each: trimmed of ASCII white space at both ends,
/// decoded as Latin-1, empty lines kept. Nothing where the file cannot be opened.
///     " ID;1;Icon \r\n\nPSDV;1"  ->  {"ID;1;Icon", "", "PSDV;1"}
std::optional<QStringList> readLines(const QString &path);
