// What the engine logs and reports in no other way.
#pragma once

#include "Logger.h"
#include "Presenter.h"

#include <QString>

/// Notices errors in the log while it lives, and shows all entries where it is given a presenter.
class LoggedErrors final : private Qel::Logger::LogListener
{
    Q_DISABLE_COPY_MOVE(LoggedErrors)

public:
    explicit LoggedErrors(Presenter *presenter = nullptr)
        : m_presenter(presenter)
    {
        Qel::Logger::registerLogListener(this);
    }
    ~LoggedErrors() override { Qel::Logger::unregisterLogListener(this); }

    bool hasAny() const { return m_hasAny; }

private:
    void handleMessage(QString level, QString time, QString message) override
    {
        m_hasAny = m_hasAny || level == QLatin1StringView("error");
        if (m_presenter != nullptr)
            m_presenter->showLogEntry({level, time, message});
    }

    Presenter *m_presenter;
    bool m_hasAny = false;
};
