// The lines of an image or shape file.
#pragma once

#include "Limits.h"
#include "RecordGrammar.h"

#include <QByteArray>
#include <QLatin1StringView>
#include <QStringList>

#include <vector>

/// A file's lines as parts of its bytes, one for each line of the file: trimmed of ASCII white
/// space at both ends, Latin-1, empty lines kept. Copies share the bytes.
///     " ID;1;Icon \r\n\nPSDV;1"  ->  {"ID;1;Icon", "", "PSDV;1"}
class FileLines final
{
public:
    FileLines() = default;
    /// Cuts at most `largestFile` bytes.
    explicit FileLines(QByteArray bytes);

    qsizetype size() const { return static_cast<qsizetype>(m_lines.size()); }
    bool isEmpty() const { return m_lines.empty(); }
    QLatin1StringView at(qsizetype index) const
    {
        const Line &line = m_lines[static_cast<std::size_t>(index)];
        const char *const begin = m_bytes.constData() + line.begin;
        return {begin, begin + line.size};
    }
    RecordGrammar::LineKind kindAt(qsizetype index) const
    {
        return RecordGrammar::LineKind(m_lines[static_cast<std::size_t>(index)].kind);
    }

    /// The number of a line in its file, from 1 on, wherever the line is in this list.
    int numberInFile(qsizetype index) const;

    /// Drops the first `count` lines.
    void removeFirst(qsizetype count);
    /// The lines with these indices, in this order.
    FileLines picked(const std::vector<int> &indices) const;
    QStringList toStringList() const;

private:
    // Files may be all line ends, so each line takes little room; see largestFile.
    struct Line
    {
        quint32 begin; ///< in the bytes
        quint32 size : 29;
        quint32 kind : 3;
    };

    QByteArray m_bytes;
    std::vector<Line> m_lines;
};

/// What a line of either kind of list is read as.
inline RecordGrammar::LineKind kindAt(const FileLines &lines, qsizetype index)
{
    return lines.kindAt(index);
}

inline RecordGrammar::LineKind kindAt(const QStringList &lines, qsizetype index)
{
    return RecordGrammar::kindOf(lines.at(index));
}

/// A line of either kind of list.
inline QLatin1StringView lineAt(const FileLines &lines, qsizetype index)
{
    return lines.at(index);
}

inline QStringView lineAt(const QStringList &lines, qsizetype index)
{
    return lines.at(index);
}
