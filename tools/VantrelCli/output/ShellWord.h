// Words of a command that is offered to a user.
#pragma once

#include <QString>

/// A word as a shell takes it:  it's  ->  'it'\''s'
QString quotedForShell(QString word);
