// Projects that are dropped onto the window.
#include "ProjectDrop.h"

#include "ProjectFolder.h"

#include <QApplication>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QUrl>

namespace {

/// The project of the first dropped file or folder.
std::optional<QString> droppedProject(const QMimeData &data)
{
    const QList<QUrl> urls = data.urls();
    if (urls.isEmpty() || !urls.first().isLocalFile())
        return std::nullopt;
    return projectFolderOf(urls.first().toLocalFile());
}

bool isDrag(QEvent::Type type)
{
    return type == QEvent::DragEnter || type == QEvent::DragMove || type == QEvent::Drop;
}

/// Accepts a drag that may be answered without harm: where it may only move, its source would
/// delete the project afterwards.
bool isTaken(QDropEvent &drag)
{
    const Qt::DropActions harmless = drag.possibleActions() & (Qt::CopyAction | Qt::LinkAction);
    if (!harmless)
        return false;
    drag.setDropAction(harmless.testFlag(Qt::CopyAction) ? Qt::CopyAction : Qt::LinkAction);
    drag.accept();
    return true;
}

} // namespace

ProjectDrop::ProjectDrop(QWidget &window, QLineEdit &projectLine, Open open)
    : QObject(&window)
    , m_open(std::move(open))
{
    window.setAcceptDrops(true);
    window.installEventFilter(this);
    // It takes drops itself otherwise, as text.
    projectLine.installEventFilter(this);
}

bool ProjectDrop::eventFilter(QObject *watched, QEvent *event)
{
    if (!isDrag(event->type()))
        return QObject::eventFilter(watched, event);

    auto &drag = *static_cast<QDropEvent *>(event);
    if (QApplication::overrideCursor() != nullptr) {
        // Work is under way that a change of the project would spoil.
        drag.ignore();
        return true;
    }
    const std::optional<QString> project = droppedProject(*drag.mimeData());
    if (!project || !isTaken(drag))
        return false;
    if (event->type() == QEvent::Drop)
        m_open(*project);
    return true;
}
