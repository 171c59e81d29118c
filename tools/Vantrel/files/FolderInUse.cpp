// The folder that is written into.
#include "FolderInUse.h"

#include <utility>

std::shared_ptr<const OpenFolder> FolderInUse::parentOf(const QString &path)
{
    QString parentPath = parentPathOf(path);
    if (!m_folder || !m_folder->isOpen() || parentPath != m_path) {
        m_folder = std::make_shared<OpenFolder>(m_root.folder(parentPath));
        m_path = std::move(parentPath);
    }
    return m_folder;
}
