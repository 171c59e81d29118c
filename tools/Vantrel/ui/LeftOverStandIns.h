// What killed dry runs have left in the folders for temporary files.
#pragma once

#include <QThread>

#include <memory>

/// Removes it on a thread of its own, from its beginning to its end at most.
class LeftOverStandIns final
{
    Q_DISABLE_COPY_MOVE(LeftOverStandIns)

public:
    LeftOverStandIns();
    ~LeftOverStandIns();

private:
    std::unique_ptr<QThread> m_thread;
};
