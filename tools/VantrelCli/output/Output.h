// Text for a terminal, a file or a pipe.
#pragma once

#include <QByteArray>
#include <QString>

#include <cstdio>

/// When text is coloured.
enum class ColorMode { Auto, Always, Never };

enum class Color { Plain, Bold, Dim, Red, Green, Yellow };

/// One of the standard streams. A reader that has gone away ends the printing, nothing else. So does one
/// that does not read, once the process was asked to end.
class Output final
{
public:
    explicit Output(std::FILE *stream);

    bool isTerminal() const;
    /// Automatic colouring needs a terminal that can show it, and a user who has not declined it.
    void setColorMode(ColorMode mode);

    void print(QStringView text);
    void printLine(QStringView text);
    void printUtf8Line(const QByteArray &text);
    /// The text in a colour, where this stream shows colours.
    QString colored(const QString &text, Color color) const;
    void flush();
    /// The reason why not all was printed, an errno; 0 where it was. ECANCELED where nobody has read it
    /// when the process was asked to end.
    int error() const { return m_error; }

private:
    /// When what is printed is written.
    enum class Writing { AtOnce, ByLines, ByBlocks };

    bool isOpen() const { return m_error == 0; }
    void printBytes(const QByteArray &bytes);
    void write(qsizetype size);
    bool waitForReader() const;

    int m_descriptor;
    Writing m_writing;
    QByteArray m_waiting; ///< printed, and not written yet
    int m_error = 0;
    bool m_showsColors = false;
};
