// Looking at an interrupted run, and recovering it, away from the GUI thread.
#include "RecoveryThread.h"

#include "Interruption.h"

#include <QThread>

#include <exception>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

void perform(const QString &projectDir, RecoveryAnswer &answer)
{
    LeftOverRun run(projectDir);
    answer.kind = run.kind();
    answer.holder = run.holder();
    if (answer.task == RecoveryTask::PutAway) {
        if (answer.kind == LeftOver::Cancelled)
            answer.result = run.putAway();
        return;
    }
    const bool isCompleted = answer.kind == LeftOver::Run && run.record().state.stage == RunStage::Done;
    if (isCompleted || answer.kind == LeftOver::Cancelled)
        answer.kind = LeftOver::Nothing;
    if (answer.kind != LeftOver::Run && answer.kind != LeftOver::Undoing)
        return;
    answer.plan = run.plan();
    if (answer.task == RecoveryTask::Look || !answer.plan.isDecidable())
        return;
    answer.result = answer.task == RecoveryTask::PutBack ? run.putBack() : run.complete();
}

void performOrSayWhyNot(const QString &projectDir, RecoveryAnswer &answer)
{
    try {
        perform(projectDir, answer);
    } catch (const WorkInterrupted &) {
        answer.isStopped = true;
    } catch (const std::exception &failure) {
        answer.failure = QString::fromLocal8Bit(failure.what());
    }
}

} // namespace

RecoveryThread::RecoveryThread(QObject *parent)
    : QObject(parent)
{
}

RecoveryThread::~RecoveryThread()
{
    stop();
    if (m_thread)
        m_thread->wait();
}

void RecoveryThread::begin(RecoveryTask task, const QString &projectDir)
{
    m_answer = {};
    m_answer.task = task;
    m_thread.reset(QThread::create([this, projectDir] { performOrSayWhyNot(projectDir, m_answer); }));
    connect(m_thread.get(), &QThread::finished, this, &RecoveryThread::tellAnswer, Qt::QueuedConnection);
    m_thread->start();
    if (m_thread->isRunning() || m_thread->isFinished())
        return;
    m_answer.failure = u"the system has no thread for it"_s;
    QMetaObject::invokeMethod(this, &RecoveryThread::tellAnswer, Qt::QueuedConnection);
}

void RecoveryThread::stop()
{
    if (m_thread)
        m_thread->requestInterruption();
}

void RecoveryThread::tellAnswer()
{
    m_thread->wait();
    m_thread.reset();
    Q_EMIT sigAnswered(std::exchange(m_answer, {}));
}
