// What the process needs before anything else runs in it.
#pragma once

/// Lets writes to a closed pipe or beyond a size limit fail as calls, instead of ending the
/// process; opens the standard streams that the caller has closed; and has names taken as UTF-8 whatever the
/// locale says.
void prepareProcess();

/// Whether so many files may be open beside those that are. The libraries end a process that they
/// cannot have a pipe in, and a run would fail in its midst.
bool mayOpenFiles(int count);
