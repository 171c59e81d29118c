// The folder that is written into.
#pragma once

#include "RootFolder.h"

#include <QString>

#include <memory>

/// The folder below a root in which the last file was written, held open: most files follow another
/// of their folder. The root must live as long as it.
class FolderInUse final
{
public:
    explicit FolderInUse(const RootFolder &root)
        : m_root(root)
    {
    }

    /// Opens the folder of a path, where that is not the one in use.
    std::shared_ptr<const OpenFolder> parentOf(const QString &path);
    /// The next call opens its folder anew: this one may have gone.
    void letGo() { m_folder.reset(); }

private:
    const RootFolder &m_root;
    QString m_path;
    std::shared_ptr<const OpenFolder> m_folder;
};
