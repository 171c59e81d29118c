// The way from a start over an interrupted run to a project that is in order.
#include "RecoveryFlow.h"

#include "CancelledRun.h"
#include "LeftOverDialog.h"
#include "LeftOverTexts.h"
#include "Logger.h"
#include "MessageBar.h"
#include "RecoveryProgress.h"
#include "StageFile.h"

#include <QMessageBox>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

void log(const RecoveryEnd &end, int line)
{
    constexpr unsigned char errorLevel = 3;
    constexpr unsigned char systemLevel = 6;
    Qel::Logger::instance()
        ->out(end.isGood ? systemLevel : errorLevel, end.story.logged(), "tools/Vantrel/RecoveryFlow", line)
        .endl();
}

LeftOverDialog::Ways waysOutOf(const RecoveryAnswer &answer)
{
    if (answer.kind == LeftOver::Unreadable || !answer.plan.isDecidable())
        return LeftOverDialog::Ways::None;
    return answer.kind == LeftOver::Undoing ? LeftOverDialog::Ways::PutBackOnly : LeftOverDialog::Ways::Both;
}

} // namespace

RecoveryFlow::RecoveryFlow(QWidget &window, MessageBar &bar)
    : m_window(window)
    , m_bar(bar)
{
    connect(&m_thread, &RecoveryThread::sigAnswered, this, &RecoveryFlow::onAnswered);
}

RecoveryFlow::~RecoveryFlow()
{
    leave();
}

bool RecoveryFlow::takesOver(const QString &projectDir)
{
    if (!StageFile::tellsOfInterruption(projectDir))
        return false;
    m_hasLeft = false;
    m_projectDir = projectDir;
    begin(RecoveryTask::Look);
    return true;
}

void RecoveryFlow::offerToPutAway(const QString &projectDir, int screens, int allScreens)
{
    // It may have been too late to be cancelled.
    if (!hasCancelledRun(projectDir))
        return;
    m_bar.tell(
        {.level = MessageLevel::Information,
         .text = summaryOfCancelled(screens, allScreens).shown(),
         .buttons = {{.text = tr("Put &Away"),
                      .name = u"btnPutAway"_s,
                      .toolTip = tr("Moves \"scr_temp\" to the earlier runs, so that the next run converts "
                                    "all screens anew."),
                      .press = [this, projectDir] { putAway(projectDir); }}}});
}

void RecoveryFlow::putAway(const QString &projectDir)
{
    if (isUnderWay()) {
        bringUp();
        return;
    }
    m_hasLeft = false;
    m_projectDir = projectDir;
    begin(RecoveryTask::PutAway);
}

bool RecoveryFlow::isUnderWay() const
{
    return m_progress != nullptr || m_question != nullptr;
}

void RecoveryFlow::bringUp()
{
    QDialog *dialog = m_question != nullptr ? static_cast<QDialog *>(m_question) : m_progress.get();
    if (dialog == nullptr)
        return;
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}

void RecoveryFlow::leave()
{
    m_hasLeft = true;
    m_thread.stop();
    if (m_progress)
        m_progress->hide();
    delete m_question;
}

void RecoveryFlow::begin(RecoveryTask task)
{
    m_progress = std::make_unique<RecoveryProgress>(nameOf(task, m_projectDir).shown(), &m_window);
    connect(m_progress.get(), &RecoveryProgress::sigStopWanted, &m_thread, &RecoveryThread::stop);
    m_thread.begin(task, m_projectDir);
}

void RecoveryFlow::onAnswered(const RecoveryAnswer &answer)
{
    m_progress.reset();
    if (m_hasLeft)
        return;
    const bool isLook = answer.task == RecoveryTask::Look;
    const bool isFound = !answer.isStopped && answer.failure.isEmpty();
    if (answer.result && answer.result->outcome == RecoveryOutcome::ConvertAgain) {
        Q_EMIT sigConvertAgain(m_projectDir, answer.plan.record.facts);
    } else if (answer.result || !isFound) {
        // Who stops a look has not begun anything.
        if (!isLook || !answer.isStopped)
            tell(answer);
    } else if (answer.kind == LeftOver::Nothing || answer.kind == LeftOver::InUse) {
        if (isLook)
            Q_EMIT sigMayStart(m_projectDir);
        else
            tell(answer);
    } else {
        ask(answer);
    }
}

void RecoveryFlow::ask(const RecoveryAnswer &answer)
{
    const Story story = questionAbout(m_projectDir, answer);
    log({summaryOf(m_projectDir, answer), false}, __LINE__);
    m_question = new LeftOverDialog(story.shown(), waysOutOf(answer), &m_window);
    m_question->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_question, &QDialog::finished, this, &RecoveryFlow::onChosen);
    m_question->open();
}

void RecoveryFlow::onChosen()
{
    const LeftOverDialog::Answer answer = m_question->answer();
    m_question = nullptr;
    if (answer == LeftOverDialog::Answer::PutBack)
        begin(RecoveryTask::PutBack);
    if (answer == LeftOverDialog::Answer::Complete)
        begin(RecoveryTask::Complete);
}

void RecoveryFlow::tell(const RecoveryAnswer &answer)
{
    const RecoveryEnd end = endOf(m_projectDir, answer);
    log(end, __LINE__);
    if (answer.task == RecoveryTask::PutAway) {
        const MessageLevel level = end.isGood ? MessageLevel::Information : MessageLevel::Warning;
        m_bar.tell({.level = level, .text = end.story.shown(), .buttons = {}});
        return;
    }
    auto *box = new QMessageBox(end.isGood ? QMessageBox::Information : QMessageBox::Warning,
                                tr("Vantrel Info"), end.story.shown(), QMessageBox::Ok, &m_window);
    box->setObjectName("recoveryEnd"_L1);
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}
