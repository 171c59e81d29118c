// What the process needs before anything else runs in it.
#pragma once

/// Lets writes to a closed pipe or beyond a size limit fail as calls, instead of ending the
/// process, and opens the standard streams that the caller has closed.
void prepareProcess();

/// For a program without a display: has names taken as UTF-8 whatever the locale says, and takes the event
/// loop that is woken with fewer calls of the system. What a desktop adds may need the other one.
void prepareWithoutDisplay();

/// What a program needs of the system from its start on, beside what it has already.
struct NeededMeans
{
    int openFiles = 0;
    int threads = 0;
};

/// What the system grants less of, for a message; null where nothing. The libraries end a process that
/// they cannot have a pipe in, and a run would fail in its midst.
const char *lackOf(const NeededMeans &means);
