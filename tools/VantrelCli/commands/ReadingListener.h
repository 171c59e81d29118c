// Following a survey for a command.
#pragma once

#include "Presenter.h"
#include "ProjectSurvey.h"
#include "ShapeUsage.h"

/// Shows the progress of a survey and collects the shapes that the screens use.
class ReadingListener final : public SurveyListener
{
public:
    ReadingListener(ShapeUsage &usage, Presenter &presenter)
        : m_usage(usage)
        , m_presenter(presenter)
    {
    }

    void onFile(int count, int index, const QString &path) override
    {
        m_presenter.showProgress(count, index);
        m_presenter.showFile(path);
    }
    void onScreen(const ImageFile &screen) override { m_usage.add(screen); }

private:
    ShapeUsage &m_usage;
    Presenter &m_presenter;
};
