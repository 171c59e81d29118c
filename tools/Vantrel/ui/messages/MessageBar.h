// The line of the window that is only there when it has something to say.
#pragma once

#include <QFrame>
#include <QList>
#include <QString>

#include <functional>

class QHBoxLayout;
class QLabel;
class QPushButton;
class QToolButton;

enum class MessageLevel { Information, Warning, Error };

/// A way on that a message offers. Pressing it takes the message away.
struct MessageButton
{
    QString text;    ///< with its key
    QString name;    ///< of the object: "btnPutAway"
    QString toolTip; ///< what it does, in full
    std::function<void()> press;
};

struct Message
{
    MessageLevel level = MessageLevel::Information;
    QString text; ///< plain; one or two lines
    QList<MessageButton> buttons;
};

/// Shows one message at a time: its level as an icon, its text, its buttons, and one that closes it.
/// Hidden while there is none, and takes no room then. Never takes the focus; a screen reader says
/// what comes. GUI thread.
class MessageBar final : public QFrame
{
    Q_OBJECT

public:
    explicit MessageBar(QWidget *parent);

    /// Takes the place of what is shown.
    void tell(const Message &message);
    void withdraw();
    /// The widget from which Tab goes into the bar.
    void follow(QWidget &widget) { m_before = &widget; }

protected:
    void changeEvent(QEvent *event) override;

private:
    void addButton(const MessageButton &button);
    void showLevel();

    MessageLevel m_level = MessageLevel::Information;
    QWidget *m_before = nullptr;
    QHBoxLayout *m_layout;
    QLabel *m_icon;
    QLabel *m_text;
    QToolButton *m_close;
    QList<QPushButton *> m_buttons;
};
