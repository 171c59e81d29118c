// The question what is to become of an interrupted run.
#pragma once

#include <QMessageBox>

/// Offers the ways out of an interrupted run. Cancel is what Enter, Escape and closing mean. GUI
/// thread.
class LeftOverDialog final : public QMessageBox
{
    Q_OBJECT

public:
    enum class Ways {
        Both,
        PutBackOnly,
        None, ///< it only tells
    };
    enum class Answer { Cancel, PutBack, Complete };

    LeftOverDialog(const QString &text, Ways ways, QWidget *parent);

    /// What the user chose, once it is finished.
    Answer answer() const;

private:
    QPushButton *add(const QString &text, const QString &name, const QString &toolTip, ButtonRole role);

    QPushButton *m_putBack = nullptr;
    QPushButton *m_complete = nullptr;
};
