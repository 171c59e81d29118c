// Who works on a project at this moment.
#pragma once

#include <QString>

#include <optional>

/// Who holds the lock of a project: "vantrel-cli, process 4711 on plant-3"; nothing where nobody
/// does, or the process has died. Only looks, and changes nothing in the project.
std::optional<QString> lockHolderOf(const QString &projectDir);
