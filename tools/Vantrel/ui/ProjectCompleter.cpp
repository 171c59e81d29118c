// What is proposed while the user types a project's path.
#include "ProjectCompleter.h"

#include "RecentProjects.h"

#include <QDir>
#include <QLineEdit>
#include <QStringListModel>

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
    // Before the line asks for them: it is given its completer only now.
    connect(&line, &QLineEdit::textEdited, this, &ProjectCompleter::propose);
    line.setCompleter(this);
}

void ProjectCompleter::propose(const QString &text)
{
    const bool isSeen = widget() != nullptr && widget()->isVisible();
    m_proposals->setStringList(isSeen ? projectProposals(text, recentProjects()) : QStringList());
}
