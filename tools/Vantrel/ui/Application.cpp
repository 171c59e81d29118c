// The application object of the window's program.
#include "Application.h"

#include "Failures.h"
#include "Logger.h"

#include <QMessageBox>

using namespace Qt::StringLiterals;

bool Application::notify(QObject *receiver, QEvent *event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (...) {
        tell(handledFailure());
    }
    return false;
}

/// On the thread of the failed step. Where even this fails, it is left out.
void Application::tell(const QString &failure)
try {
    constexpr unsigned char errorLevel = 3;
    Qel::Logger::instance()
        ->out(errorLevel, u"A step of the program failed: %1"_s.arg(failure), "tools/Vantrel/Application",
              __LINE__)
        .endl();
    if (!m_hasTold.exchange(true))
        QMetaObject::invokeMethod(
            this, [this, failure] { showFailure(failure); }, Qt::QueuedConnection);
} catch (...) {
}

void Application::showFailure(const QString &failure)
{
    const QString text = tr("A step of the program failed: %1. It was left out; later failures are only "
                            "logged. If the window does not work as it should, close it and start it again.")
                             .arg(failure);
    auto *box =
        new QMessageBox(QMessageBox::Critical, tr("Vantrel Info"), text, QMessageBox::Ok, activeWindow());
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}
