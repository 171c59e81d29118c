// Keeps a second run away from a project.
#pragma once

#include <QLockFile>
#include <QString>

/// Holds ".vantrel.lock" of a project as long as it lives. A lock that a process left when it
/// died is taken over. A project directory in which no file can be made is not locked.
class ProjectLock final
{
    Q_DISABLE_COPY_MOVE(ProjectLock)

public:
    explicit ProjectLock(const QString &projectDir);
    ~ProjectLock() = default;

    bool isHeldByOther() const { return m_isHeldByOther; }
    /// Who holds it instead: "vantrel-cli, process 4711 on plant-3".
    const QString &holder() const { return m_holder; }

private:
    void take();
    void refuse(const QString &path);
    bool isAbandoned() const;

    QLockFile m_file;
    QString m_holder;
    bool m_isHeldByOther = false;
};
