// The question what is to become of an interrupted run.
#include "LeftOverDialog.h"

#include <QPushButton>

using namespace Qt::StringLiterals;

LeftOverDialog::LeftOverDialog(const QString &text, Ways ways, QWidget *parent)
    : QMessageBox(ways == Ways::None ? QMessageBox::Warning : QMessageBox::Question, tr("Vantrel Info"), text,
                  QMessageBox::NoButton, parent)
{
    setObjectName("leftOverDialog"_L1);
    setTextFormat(Qt::PlainText);
    if (ways != Ways::None) {
        m_putBack =
            add(tr("&Put Back"), u"btnPutBack"_s,
                tr("Makes \"scr\" what it was before the run. Can be stopped and repeated."), ActionRole);
    }
    if (ways == Ways::Both) {
        m_complete = add(tr("C&omplete"), u"btnComplete"_s,
                         tr("Does what remains of the run. Can be stopped and repeated."), ActionRole);
    }
    QPushButton *cancel = add(ways == Ways::None ? tr("&Close") : tr("&Cancel"), u"btnCancel"_s,
                              tr("Changes nothing. The next start asks again."), RejectRole);
    setDefaultButton(cancel);
    setEscapeButton(cancel);
}

QPushButton *LeftOverDialog::add(const QString &text, const QString &name, const QString &toolTip,
                                 ButtonRole role)
{
    QPushButton *button = addButton(text, role);
    button->setObjectName(name);
    button->setToolTip(toolTip);
    return button;
}

LeftOverDialog::Answer LeftOverDialog::answer() const
{
    const QAbstractButton *clicked = clickedButton();
    if (clicked != nullptr && clicked == m_putBack)
        return Answer::PutBack;
    return clicked != nullptr && clicked == m_complete ? Answer::Complete : Answer::Cancel;
}
