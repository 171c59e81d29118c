// The sign that a recovery is under way.
#pragma once

#include <QDialog>

class QLabel;
class QPushButton;

/// Comes up where a task takes longer than a moment, and leaves the window usable beside it. Goes
/// when its owner deletes it, not when its user closes it: the task ends only before its next
/// screen. GUI thread.
class RecoveryProgress final : public QDialog
{
    Q_OBJECT

public:
    /// `what` says what is done.
    RecoveryProgress(const QString &what, QWidget *parent);

    /// The user has asked to stop, or nobody waits any more.
    void showStopping();
    void reject() override;

Q_SIGNALS:
    void sigStopWanted();

private:
    QLabel *m_label;
    QPushButton *m_cancel;
};
