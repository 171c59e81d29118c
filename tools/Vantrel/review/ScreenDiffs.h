// Two versions of a project's screens, compared one by one.
#pragma once

#include "FileDiff.h"
#include "Finding.h"

#include <QString>

#include <optional>

/// How two versions of a screen differ; neither is set where they are equal, byte for byte.
struct ScreenDifference
{
    std::optional<Finding> finding; ///< why they could not be compared
    std::optional<FileDiff> diff;
};

/// Compares one screen after the other and counts what differs.
class ScreenDiffs final
{
public:
    ScreenDifference compare(const QString &shownPath, const FileVersion &before, const FileVersion &after);

    qsizetype changedFiles() const { return m_changedFiles; }
    qsizetype addedLines() const { return m_addedLines; }
    qsizetype removedLines() const { return m_removedLines; }
    qsizetype unreadableFiles() const { return m_unreadableFiles; }

private:
    qsizetype m_changedFiles = 0;
    qsizetype m_unreadableFiles = 0;
    qsizetype m_addedLines = 0;
    qsizetype m_removedLines = 0;
};
