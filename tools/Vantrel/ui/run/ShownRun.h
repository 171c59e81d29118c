// Which of its runs a window shows.
#pragma once

#include <QString>
#include <QStringList>

/// The runs that a window has started. The worker performs them one after the other and tells the
/// end of each in that order; the window shows the last one at most, and that only until it is
/// cancelled or its end is told. GUI thread.
class ShownRun final
{
public:
    /// What it means that the worker has told an end.
    enum class End {
        OfShownRun,     ///< what the user waits for
        OfEarlierRun,   ///< of one that was cancelled, while another one is shown already
        OfCancelledRun, ///< while none is shown
    };

    /// A run over the project is started, and shown from now on.
    void start(const QString &projectDir);
    /// The run is shown no more, whether or not its end was told.
    void leave() { m_isShown = false; }
    /// An end was told. That of the shown run does not leave it.
    End takeEnd();

    /// Stays the same object, so that it can be looked at by reference.
    const bool &isShown() const { return m_isShown; }
    /// Whether what is told now is told by the run that was started last.
    bool isLastOneTelling() const { return m_awaited.size() <= 1; }
    /// Whether a run over this project has not told its end.
    bool awaitsEndOf(const QString &projectDir) const { return m_awaited.contains(projectDir); }
    /// Project of the run that was started last.
    const QString &projectDir() const { return m_projectDir; }

private:
    bool m_isShown = false;
    QStringList m_awaited; ///< projects of the runs that have not told their ends, in their order
    QString m_projectDir;
};
