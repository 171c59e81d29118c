// Which of its runs a window shows.
#include "ShownRun.h"

#include <algorithm>

void ShownRun::start(const QString &projectDir)
{
    m_isShown = true;
    ++m_endsToCome;
    m_projectDir = projectDir;
}

ShownRun::End ShownRun::takeEnd()
{
    m_endsToCome = std::max(m_endsToCome - 1, 0);
    if (!m_isShown)
        return End::OfCancelledRun;
    return m_endsToCome == 0 ? End::OfShownRun : End::OfEarlierRun;
}
