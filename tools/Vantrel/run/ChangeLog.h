// The change log: one row for each report of a run, for spreadsheets.
#pragma once

#include "AppendedFile.h"
#include "STBlock.h"
#include "TextBuffer.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// Appends reports to change logs, see writeChangeLog(). Keeps the log open between reports; a log
/// that was moved or removed meanwhile is opened anew, so that every report goes to its path.
///
/// Nothing is written through a link, nor into what isChangeLog() does not take for a log, see
/// AppendedFile. A log that cannot be opened or written is passed over.
///
/// Control characters in a field are spelt out, so that no name forges a row.
/// A field that holds a place holder, "%4", takes in the field behind it that has the number. A row
/// that would grow to 64 KiB so keeps its fields as they stand.
class ChangeLog final
{
public:
    void append(const STBlock &block, const QString &path);

    /// Keeps the row of a report for the next write().
    void add(const STBlock &block);
    /// Appends the rows that were kept to the log at `path`.
    void write(const QString &path);
    /// Logs, once for each log, that a row would have been too long. Apart from write(), since who
    /// hears of it may have more rows to add.
    void tellUnfilledRow();

private:
    QByteArray m_path;
    AppendedFile m_file;
    TextBuffer<char> m_rows;                 ///< to be written next
    std::optional<QString> m_unfilledScreen; ///< of the first row that would be too long, until it is told
    bool m_hasToldUnfilledRow = false;       ///< of the log at this path
};

/// Appends a report to the change log at `path`: Latin-1, one row of seven fields separated by
/// ';'; a new file gets its header first. A log that cannot be opened is passed over.
void writeChangeLog(const STBlock &block, const QString &path);

/// Whether a log lies at `path` that rows may be appended to: a file without a second name, in a
/// folder that is no link. Another name could be that of any file of the user.
bool isChangeLog(const QString &path);

/// An object's name without the four characters of its tag; a shorter one is kept whole.
QString withoutTag(const QString &object);
