// Holding a thread at a chosen point, so that a test need not be quick.
#pragma once

#include "Converter.h"

#include <QSemaphore>

#include <atomic>
#include <memory>
#include <thread>

/// Holds a converter's worker each time it comes to a place, until the test lets it through.
/// Opens for good when it goes away.
class WorkerGate final
{
public:
    enum Place {
        BeforeFile,    ///< right before a file is converted
        AfterCopyBack, ///< all files were copied back, the end is still to be told
    };

    WorkerGate(Place place, Converter &converter);
    ~WorkerGate();
    Q_DISABLE_COPY_MOVE(WorkerGate)

    /// Waits until the worker stands at the gate, without handling events of the test's thread.
    bool isReached();
    void letThrough();
    void open();
    /// Opens as soon as the converter was told to stop. It will be, before it goes away.
    void openWhenStopped(const Converter &converter);
    /// How often the worker came to the gate.
    int arrivals() const { return m_state->arrivals; }

private:
    struct State
    {
        void hold();
        void open();

        QSemaphore arrived;
        QSemaphore passes;
        std::atomic<bool> isOpen{false};
        std::atomic<int> arrivals{0};
    };
    // Shared, because the worker may still stand at the gate when it opens for good.
    std::shared_ptr<State> m_state;
    std::thread m_opener;
};

/// Keeps the thread of an object busy, so that it does not pick up what is queued for it.
class BusyThread final
{
public:
    explicit BusyThread(QObject &object);
    ~BusyThread();
    Q_DISABLE_COPY_MOVE(BusyThread)

    void release();

private:
    struct Meeting
    {
        QSemaphore begun;
        QSemaphore mayEnd;
    };
    std::shared_ptr<Meeting> m_meeting;
};

/// Waits until the thread of an object has done what was queued for the object before.
void waitForQueuedCalls(QObject &object);
