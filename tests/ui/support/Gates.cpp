// Holding a thread at a chosen point.
#include "Gates.h"

#include <QThread>

WorkerGate::WorkerGate(Place place, Converter &converter)
    : m_state(std::make_shared<State>())
{
    const auto holdBeforeFile = [state = m_state] { state->hold(); };
    const auto holdAtLast = [state = m_state](int count, int index) {
        if (index == count)
            state->hold();
    };
    if (place == BeforeFile) {
        QObject::connect(&converter, &Converter::sigUpdFileName, &converter, holdBeforeFile,
                         Qt::DirectConnection);
    } else {
        QObject::connect(&converter, &Converter::sigProgressChanged, &converter, holdAtLast,
                         Qt::DirectConnection);
    }
}

WorkerGate::~WorkerGate()
{
    open();
    if (m_opener.joinable())
        m_opener.join();
}

void WorkerGate::State::hold()
{
    ++arrivals;
    arrived.release();
    if (!isOpen)
        passes.acquire();
}

void WorkerGate::State::open()
{
    isOpen = true;
    passes.release(); // for the one that waits already
}

bool WorkerGate::isReached()
{
    constexpr int patience = 20'000;
    return m_state->arrived.tryAcquire(1, patience);
}

void WorkerGate::letThrough()
{
    m_state->passes.release();
}

void WorkerGate::open()
{
    m_state->open();
}

void WorkerGate::openWhenStopped(const Converter &converter)
{
    m_opener = std::thread([state = m_state, &converter] {
        while (!state->isOpen && !converter.stopRequested)
            std::this_thread::yield();
        state->open();
    });
}

BusyThread::BusyThread(QObject &object)
    : m_meeting(std::make_shared<Meeting>())
{
    const auto meet = [meeting = m_meeting] {
        meeting->begun.release();
        meeting->mayEnd.acquire();
    };
    QMetaObject::invokeMethod(&object, meet, Qt::QueuedConnection);
    m_meeting->begun.acquire();
}

BusyThread::~BusyThread()
{
    release();
}

void BusyThread::release()
{
    m_meeting->mayEnd.release();
}

void waitForQueuedCalls(QObject &object)
{
    QMetaObject::invokeMethod(
        &object, [] {}, Qt::BlockingQueuedConnection);
}
