// The progress of a run at a terminal.
#include "ProgressLine.h"

#include "EscapedText.h"

#include <algorithm>

#include <sys/ioctl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int barWidth = 24;
constexpr qint64 millisecondsBetweenDrawings = 50;

qsizetype terminalWidth()
{
    constexpr qsizetype usualWidth = 80;
    winsize size{};
    const bool isKnown = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : usualWidth;
}

} // namespace

void ProgressLine::show(int count, int index, const QString &fileName)
{
    if (!m_isShown || (m_isDrawn && m_sinceDrawn.elapsed() < millisecondsBetweenDrawings))
        return;
    const auto filled = static_cast<int>(qint64{barWidth} * index / std::max(count, 1));
    const QString bar = QString(filled, u'#') + QString(barWidth - filled, u'.');
    const QString line = u"[%1] %2/%3 %4"_s.arg(bar).arg(index).arg(count).arg(escaped(fileName));
    m_output.print(u"\r\x1b[K"_s + line.left(terminalWidth() - 1));
    m_output.flush();
    m_isDrawn = true;
    m_sinceDrawn.start();
}

void ProgressLine::clear()
{
    if (!m_isDrawn)
        return;
    m_output.print(u"\r\x1b[K");
    m_output.flush();
    m_isDrawn = false;
}
