// The sign that a recovery is under way.
#include "RecoveryProgress.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <chrono>

using namespace Qt::StringLiterals;

namespace {

/// A sign that goes as soon as it has come is in the way.
constexpr std::chrono::milliseconds shortTask{400};

constexpr int narrowest = 460; // pixels

} // namespace

RecoveryProgress::RecoveryProgress(const QString &what, QWidget *parent)
    : QDialog(parent)
    , m_label(new QLabel(what))
    , m_cancel(new QPushButton(tr("&Cancel")))
{
    setObjectName("recoveryProgress"_L1);
    setWindowTitle(tr("Vantrel Info"));
    m_label->setTextFormat(Qt::PlainText);
    m_label->setWordWrap(true);
    auto *bar = new QProgressBar;
    bar->setRange(0, 0); // nobody knows how much there is to do
    bar->setAccessibleName(tr("Progress"));
    m_cancel->setObjectName("btnCancel"_L1);
    m_cancel->setToolTip(tr("Stops before the next screen. No screen is lost; the next start asks again."));

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_label);
    layout->addWidget(bar);
    layout->addWidget(m_cancel, 0, Qt::AlignRight);
    setMinimumWidth(narrowest);
    connect(m_cancel, &QPushButton::clicked, this, &RecoveryProgress::reject);
    QTimer::singleShot(shortTask, this, &QWidget::show);
}

void RecoveryProgress::showStopping()
{
    m_label->setText(tr("Stopping after the current screen..."));
    m_cancel->setEnabled(false);
}

void RecoveryProgress::reject()
{
    showStopping();
    Q_EMIT sigStopWanted();
}
