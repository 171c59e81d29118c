// What a run tells, on its way to the window's tables.
#include "Backlog.h"

#include <QElapsedTimer>

#include <utility>

namespace {

// In milliseconds. Painting the tables takes a few of them: it is done often enough to look alive
// and seldom enough to leave the time for filling them.
constexpr int pauseBetweenTurns = 30;
constexpr int longestTurn = 10;

} // namespace

Backlog::Backlog()
{
    m_pause.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, &Backlog::performTurn);
}

void Backlog::add(Step step)
{
    m_steps.push_back(std::move(step));
    if (m_pause.isActive())
        return;
    m_pause.start(pauseBetweenTurns);
    finish();
}

void Backlog::finish()
{
    while (!m_steps.empty())
        performFirst();
}

void Backlog::performTurn()
{
    if (m_steps.empty())
        return;
    m_pause.start(pauseBetweenTurns);
    QElapsedTimer turn;
    turn.start();
    while (!m_steps.empty() && !turn.hasExpired(longestTurn))
        performFirst();
    // What the user did meanwhile comes first, then the rest goes on.
    if (!m_steps.empty())
        m_pause.start(0);
}

void Backlog::performFirst()
{
    const Step step = std::move(m_steps.front());
    m_steps.pop_front();
    step();
}
