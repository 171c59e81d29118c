// Checking the lines of image and shape files against the record grammar.
#pragma once

#include <QString>

enum class FileKind { Image, Shape };

/// The file that lines come from, as far as messages about them tell.
struct CheckedFile
{
    FileKind kind;
    int lineOffset = 0; ///< added to the index of a shape's line
};

/// See Converter::checkFieldCount().
bool checkFieldCount(const QString &tag, int present, int required, QString &errorText, int lineIndex,
                     const CheckedFile &file);

/// Checks lines, a QStringList or FileLines, up to the first that fails; the complaint about it is
/// in `errorText` then. Otherwise it holds what the last line of a known kind has left there.
template <typename Lines>
bool checkLines(const Lines &lines, const CheckedFile &file, QString &errorText);
