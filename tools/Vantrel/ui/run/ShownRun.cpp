// Which of its runs a window shows.
#include "ShownRun.h"

void ShownRun::start(const QString &projectDir)
{
    m_isShown = true;
    m_awaited.append(projectDir);
    m_projectDir = projectDir;
}

ShownRun::End ShownRun::takeEnd()
{
    if (!m_awaited.isEmpty())
        m_awaited.removeFirst();
    if (!m_isShown)
        return End::OfCancelledRun;
    return m_awaited.isEmpty() ? End::OfShownRun : End::OfEarlierRun;
}
