// The way from a start over an interrupted run to a project that is in order.
#pragma once

#include "RecoveryThread.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>

class LeftOverDialog;
class MessageBar;
class RecoveryProgress;
class Story;
class QWidget;

/// Looks at a project before a run is started over it. Where a run was interrupted there, asks what
/// is to become of it, does so, and tells what was done. Offers to put away what a cancelled run has
/// left, and asks nothing about it. GUI thread.
class RecoveryFlow final : public QObject
{
    Q_OBJECT

public:
    /// Dialogs belong to the window, which has the bar.
    RecoveryFlow(QWidget &window, MessageBar &bar);
    ~RecoveryFlow() override;

    /// While nothing is under way: whether it has something to find out about the project. A run
    /// must not be started then; it tells by sigMayStart() or sigConvertAgain() where one may.
    /// Without a stage file in the project this takes one look at the disk.
    bool takesOver(const QString &projectDir);
    /// A run over the project was cancelled, after so many of all screens, and has told its end.
    void offerToPutAway(const QString &projectDir, int screens, int allScreens);
    bool isUnderWay() const;
    /// Shows what is under way before all other windows.
    void bringUp();
    /// Asks no more, and ends what it is doing before the next screen.
    void leave();

Q_SIGNALS:
    /// There is no interrupted run, or somebody else is at work, which the run itself finds out.
    void sigMayStart(const QString &projectDir);
    /// The interrupted run is to be performed anew: "scr" is as it was before it.
    void sigConvertAgain(const QString &projectDir, const RunFacts &facts);

private:
    void begin(RecoveryTask task);
    void onAnswered(const RecoveryAnswer &answer);
    void ask(const RecoveryAnswer &answer);
    void onChosen();
    void putAway(const QString &projectDir);
    void tell(const RecoveryAnswer &answer);

    QWidget &m_window;
    MessageBar &m_bar;
    RecoveryThread m_thread;
    QString m_projectDir;
    std::unique_ptr<RecoveryProgress> m_progress; ///< while a task is under way
    QPointer<LeftOverDialog> m_question;          ///< while it is asked
    bool m_hasLeft = false;
};
