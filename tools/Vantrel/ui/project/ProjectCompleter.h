// What is proposed while the user types a project's path.
#pragma once

#include <QCompleter>
#include <QStringList>

class QAbstractItemView;
class QLineEdit;
class QStringListModel;

/// Proposes, below a line, the recent projects that contain what is typed, and the folders that
/// the path may go on with. Changes the text only when the user chooses a proposal. A click beside
/// the proposals does what it would without them. Belongs to the line; GUI thread.
class ProjectCompleter final : public QCompleter
{
public:
    explicit ProjectCompleter(QLineEdit &line);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void propose(const QString &text);

    QStringListModel *m_proposals;
    QAbstractItemView *m_popup = nullptr; ///< once it is made
};

/// The proposals for a text: recent projects first, then folders by name; never the text itself.
/// Hidden folders are proposed once their dot is typed.
QStringList projectProposals(const QString &text, const QStringList &recent);
