// The progress of a run at a terminal.
#pragma once

#include "Output.h"

#include <QElapsedTimer>

/// One line that is drawn again and again while a run goes on: a bar and the name of the file
/// under way. Draws nothing where the stream is no terminal.
class ProgressLine final
{
public:
    /// `isWanted` false leaves a terminal alone, too.
    ProgressLine(Output &output, bool isWanted)
        : m_output(output)
        , m_isShown(isWanted && output.isTerminal())
    {
    }

    void show(int count, int index, const QString &fileName);
    /// Makes room for other lines; the next show() draws the bar again.
    void clear();

private:
    Output &m_output;
    bool m_isShown;
    bool m_isDrawn = false;
    QElapsedTimer m_sinceDrawn;
};
