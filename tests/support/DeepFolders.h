// Folders in folders, more than a small stack has room for.
#pragma once

#include <QString>

#include <functional>

/// Deeper than any path leads.
inline constexpr int veryDeep = 3'000;

/// Makes so many folders in each other in a folder that is there. Each is named "d".
void makeDeepFolders(const QString &folder, int depth);

/// Does the work on a thread with a stack of some hundred kilobytes, and returns when it is done.
void onSmallStack(const std::function<void()> &work);
