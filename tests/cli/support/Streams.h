// Streams for the program to write to: a pipe that a test reads when it likes, and a terminal.
#pragma once

#include <QByteArray>

/// The two ends of a stream. A test hands `writeEnd` to a run, lets it go once the program has
/// started, and reads what arrives.
class Stream
{
    Q_DISABLE_COPY_MOVE(Stream)

public:
    ~Stream();

    int writeEnd() const { return m_writeEnd; }
    void closeWriteEnd();
    void closeReadEnd();

    /// Whether the program has written something that nobody has read yet.
    bool hasArrivals() const;
    /// Everything until the last writer has gone away.
    QByteArray readToEnd() const;

protected:
    Stream() = default;

    int m_readEnd = -1;
    int m_writeEnd = -1;
};

/// Holds 4096 bytes; who writes more waits for the reader.
class Pipe final : public Stream
{
public:
    Pipe();
    static constexpr int capacity = 4096;

    /// Writes that many bytes: whoever writes next waits.
    void fill();
};

/// A terminal that shows every byte as it comes.
class Terminal final : public Stream
{
public:
    explicit Terminal(int columns);
};
