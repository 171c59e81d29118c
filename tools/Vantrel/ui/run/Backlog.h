// What a run tells, on its way to the window's tables.
#pragma once

#include <QObject>
#include <QTimer>

#include <deque>
#include <functional>

/// Performs steps in the order in which they are added, and keeps the event loop free to hear
/// the user however fast they come: what is added shortly after something was performed waits
/// for the next turn, and a turn that takes too long leaves the rest to another one. A step may
/// add steps. GUI thread.
class Backlog final : public QObject
{
public:
    using Step = std::function<void()>;

    Backlog();

    bool isEmpty() const { return m_steps.empty(); }
    /// Performs the step at once when nothing was performed a moment ago, else in its turn.
    void add(Step step);
    /// Performs everything that waits.
    void finish();

private:
    void performTurn();
    void performFirst();

    std::deque<Step> m_steps;
    QTimer m_pause{this}; ///< runs while steps wait, and for a moment after each turn
};
