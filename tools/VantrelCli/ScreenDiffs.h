// Two versions of a project's screens, compared one by one.
#pragma once

#include "FileDiff.h"
#include "Presenter.h"

#include <QList>
#include <QString>

/// Shows the differences of one screen after the other and counts them.
class ScreenDiffs final
{
public:
    explicit ScreenDiffs(Presenter &presenter)
        : m_presenter(presenter)
    {
    }

    void compare(const QString &shownPath, const FileVersion &before, const FileVersion &after);

    qsizetype changedFiles() const { return m_changedFiles; }
    /// Whether every screen could be read and none differs.
    bool areEqual() const { return m_changedFiles == 0 && m_unreadableFiles == 0; }
    QList<CountValue> counts() const;

private:
    Presenter &m_presenter;
    qsizetype m_changedFiles = 0;
    qsizetype m_unreadableFiles = 0;
    qsizetype m_addedLines = 0;
    qsizetype m_removedLines = 0;
};
