// Text for a terminal, a file or a pipe.
#pragma once

#include <QByteArray>
#include <QString>

#include <cstdio>

/// When text is coloured.
enum class ColorMode { Auto, Always, Never };

enum class Color { Plain, Bold, Dim, Red, Green, Yellow };

/// One of the standard streams. A reader that has gone away ends the printing, nothing else.
class Output final
{
public:
    explicit Output(std::FILE *stream)
        : m_stream(stream)
    {
    }

    bool isTerminal() const;
    /// Automatic colouring needs a terminal that can show it, and a user who has not declined it.
    void setColorMode(ColorMode mode);

    void print(QStringView text);
    void printLine(QStringView text);
    void printUtf8Line(const QByteArray &text);
    /// The text in a colour, where this stream shows colours.
    QString colored(const QString &text, Color color) const;
    void flush();
    /// The reason why not all was printed, an errno; 0 where it was.
    int error() const { return m_error; }

private:
    bool isOpen() const { return m_error == 0; }
    void printBytes(const QByteArray &bytes);
    void note(bool isDone);

    std::FILE *m_stream;
    int m_error = 0;
    bool m_showsColors = false;
};
