// What is proposed while the user types a project's path.
#include "ProjectCompleter.h"

#include "RecentProjects.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QMouseEvent>
#include <QStringListModel>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {

QDir::Filters folderFilters(QStringView beginning)
{
    const QDir::Filters folders = QDir::Dirs | QDir::NoDotAndDotDot;
    return beginning.startsWith(u'.') ? folders | QDir::Hidden : folders;
}

/// The folders that an absolute path may go on with.
///     "/plants/no"  ->  {"/plants/north", "/plants/north2"}
QStringList foldersBeginningWith(const QString &path)
{
    if (!path.startsWith(u'/'))
        return {};
    const qsizetype nameBegin = path.lastIndexOf(u'/') + 1;
    const QString parent = path.first(nameBegin);
    const QStringView beginning = QStringView(path).sliced(nameBegin);

    QStringList folders;
    const QStringList names = QDir(parent).entryList(folderFilters(beginning), QDir::Name | QDir::IgnoreCase);
    for (const QString &name : names) {
        if (name.startsWith(beginning, Qt::CaseInsensitive))
            folders += parent + name;
    }
    return folders;
}

/// Gives a press to what lies at its place now.
void pressAgain(const QMouseEvent &press)
{
    const QPointF place = press.globalPosition();
    const QWidget *target = QApplication::widgetAt(place.toPoint());
    QWindow *window = target != nullptr ? target->window()->windowHandle() : nullptr;
    if (window == nullptr)
        return;
    const QPointF local = window->mapFromGlobal(place);
    // Not by a posted event: the release may be the next that is waiting.
    QMouseEvent again(press.type(), local, local, place, press.button(), press.buttons(), press.modifiers());
    QCoreApplication::sendEvent(window, &again);
}

} // namespace

QStringList projectProposals(const QString &text, const QStringList &recent)
{
    if (text.isEmpty())
        return recent;
    QStringList proposals = recent.filter(text, Qt::CaseInsensitive) + foldersBeginningWith(text);
    proposals.removeDuplicates();
    proposals.removeAll(text);
    return proposals;
}

ProjectCompleter::ProjectCompleter(QLineEdit &line)
    : QCompleter(&line)
    , m_proposals(new QStringListModel(this))
{
    setModel(m_proposals);
    // All proposals contain the text. Without this filter one of them would be chosen from the
    // start, so that Return takes it though the user has only typed.
    setCaseSensitivity(Qt::CaseInsensitive);
    setFilterMode(Qt::MatchContains);
    // Some platforms would repeat a press beside the proposals, others not: it is done here.
    m_popup = popup();
    m_popup->setAttribute(Qt::WA_NoMouseReplay);
    // Before the line asks for them: it is given its completer only now.
    connect(&line, &QLineEdit::textEdited, this, &ProjectCompleter::propose);
    line.setCompleter(this);
}

void ProjectCompleter::propose(const QString &text)
{
    const bool isSeen = widget() != nullptr && widget()->isVisible();
    m_proposals->setStringList(isSeen ? projectProposals(text, recentProjects()) : QStringList());
}

bool ProjectCompleter::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_popup || event->type() != QEvent::MouseButtonPress)
        return QCompleter::eventFilter(watched, event);
    const auto &press = *static_cast<QMouseEvent *>(event);
    if (m_popup->rect().contains(press.position().toPoint()))
        return QCompleter::eventFilter(watched, event);
    m_popup->hide();
    pressAgain(press);
    return true;
}
