// Looking at an interrupted run, and recovering it, away from the GUI thread.
#pragma once

#include "LeftOverRun.h"

#include <QObject>
#include <QString>

#include <memory>
#include <optional>

class QThread;

enum class RecoveryTask { Look, PutBack, Complete, PutAway };

/// What came of a task.
struct RecoveryAnswer
{
    RecoveryTask task = RecoveryTask::Look;
    LeftOver kind = LeftOver::Nothing; ///< also where the run has ended but for its stage file
    QString holder;                    ///< of a project that is in use
    RecoveryPlan plan;                 ///< of a run or an undoing
    /// What was done; nothing where there was nothing to do, or where that cannot be decided.
    std::optional<RecoveryResult> result;
    bool isStopped = false; ///< half-way
    QString failure;        ///< why nothing could be found out, where that is so
};

/// Performs one task at a time on a thread of its own. Destroying it stops the task before its next
/// screen. GUI thread.
class RecoveryThread final : public QObject
{
    Q_OBJECT

public:
    explicit RecoveryThread(QObject *parent = nullptr);
    ~RecoveryThread() override;

    /// While no task is under way. sigAnswered() tells its end.
    void begin(RecoveryTask task, const QString &projectDir);
    /// Ends the task before its next screen.
    void stop();
    bool isBusy() const { return m_thread != nullptr; }

Q_SIGNALS:
    /// From the event loop of this object's thread.
    void sigAnswered(const RecoveryAnswer &answer);

private:
    void tellAnswer();

    std::unique_ptr<QThread> m_thread; ///< null between tasks
    RecoveryAnswer m_answer;           ///< the thread's while it runs
};
