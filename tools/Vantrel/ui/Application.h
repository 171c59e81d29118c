// The application object of the window's program.
#pragma once

#include <QApplication>

#include <atomic>

/// An application in which a failure of one step leaves the rest at work: an exception that leaves a slot or
/// an event, on any thread, is logged, and its user is told of the first one. Qt itself would end the
/// process.
class Application final : public QApplication
{
    Q_OBJECT

public:
    Application(int &argc, char **argv)
        : QApplication(argc, argv)
    {
    }

    bool notify(QObject *receiver, QEvent *event) override;

private:
    void tell(const QString &failure);
    void showFailure(const QString &failure);

    std::atomic<bool> m_hasTold{false};
};
