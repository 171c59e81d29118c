// What fuzz targets share: ending at what must not be, and the means to find it out.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <cstdint>

/// Ends the process, saying what does not hold, so that libFuzzer keeps the input.
void expect(bool holds, const char *what);

/// The input of one execution as bytes; looks at them only.
QByteArray bytesOf(const std::uint8_t *data, std::size_t size);

/// The lines of a file by a reading of its own, to hold the program's against: cut at line feeds,
/// ASCII white space taken away at both ends, Latin-1.
QStringList linesOf(const QByteArray &file);

/// Ends the process unless the second list has the same texts, in whatever order.
void expectSameLines(QStringList one, QStringList other, const char *what);

/// Ends the process unless the bytes are lines of text without any other control character.
void expectPlainText(const QByteArray &text);
/// The same for what may show the program's colours too, each of which ends in the line it begins in.
void expectColoredText(const QByteArray &text);

/// Ends the process unless the bytes are JSON objects, one a line, in valid UTF-8.
void expectJsonLines(const QByteArray &text);

/// How much memory was asked for between its making and now, freed or not, by all threads. Other
/// than time, it is the same in every execution, and grows with the work that is done.
class MemoryMeter final
{
public:
    MemoryMeter();

    std::size_t allocations() const;
    std::size_t bytes() const;

private:
    std::size_t m_allocationsBefore;
    std::size_t m_bytesBefore;
};
