// The line of the window that is only there when it has something to say.
#include "MessageBar.h"

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct LevelLook
{
    MessageLevel level;
    QStyle::StandardPixmap icon;
    const char *name; ///< for who does not see the icon
};

constexpr std::array looks{
    LevelLook{MessageLevel::Information, QStyle::SP_MessageBoxInformation,
              QT_TRANSLATE_NOOP("MessageBar", "Information")},
    LevelLook{MessageLevel::Warning, QStyle::SP_MessageBoxWarning,
              QT_TRANSLATE_NOOP("MessageBar", "Warning")},
    LevelLook{MessageLevel::Error, QStyle::SP_MessageBoxCritical, QT_TRANSLATE_NOOP("MessageBar", "Error")},
};

const LevelLook &lookOf(MessageLevel level)
{
    return *std::find_if(looks.begin(), looks.end(),
                         [level](const LevelLook &look) { return look.level == level; });
}

} // namespace

MessageBar::MessageBar(QWidget *parent)
    : QFrame(parent)
    , m_layout(new QHBoxLayout(this))
    , m_icon(new QLabel(this))
    , m_text(new QLabel(this))
    , m_close(new QToolButton(this))
{
    setObjectName("messageBar"_L1);
    setFrameShape(QFrame::StyledPanel);
    hide();

    m_text->setObjectName("messageText"_L1);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_close->setObjectName("btnCloseMessage"_L1);
    m_close->setAutoRaise(true);
    m_close->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    m_close->setToolTip(tr("Closes this message. Nothing else is changed."));
    m_close->setAccessibleName(tr("Close"));
    connect(m_close, &QToolButton::clicked, this, &MessageBar::withdraw);

    constexpr int margin = 4; // pixels
    m_layout->setContentsMargins(margin, margin, margin, margin);
    m_layout->addWidget(m_icon);
    m_layout->addWidget(m_text, 1);
    m_layout->addWidget(m_close);
}

void MessageBar::tell(const Message &message)
{
    withdraw();
    m_level = message.level;
    m_text->setText(message.text);
    showLevel();
    QWidget *before = m_before;
    for (const MessageButton &button : message.buttons) {
        addButton(button);
        setTabOrder(before, m_buttons.last());
        before = m_buttons.last();
    }
    setTabOrder(before, m_close);
    show();
    QAccessibleEvent announcement(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&announcement);
}

void MessageBar::withdraw()
{
    hide();
    // One of them may be what is being pressed.
    for (QPushButton *button : std::as_const(m_buttons)) {
        button->hide();
        button->deleteLater();
    }
    m_buttons.clear();
}

void MessageBar::addButton(const MessageButton &button)
{
    auto *widget = new QPushButton(button.text, this);
    widget->setObjectName(button.name);
    widget->setToolTip(button.toolTip);
    widget->setAutoDefault(false);
    connect(widget, &QPushButton::clicked, this, [this, press = button.press] {
        withdraw();
        press();
    });
    m_layout->insertWidget(m_layout->indexOf(m_close), widget);
    m_buttons.append(widget);
}

void MessageBar::showLevel()
{
    const LevelLook &look = lookOf(m_level);
    const QString level = tr(look.name);
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    m_icon->setPixmap(style()->standardIcon(look.icon, nullptr, this).pixmap(size));
    m_icon->setAccessibleName(level);
    m_icon->setToolTip(level);
    setAccessibleName(level + u": "_s + m_text->text());
}

void MessageBar::changeEvent(QEvent *event)
{
    // Icons are the style's.
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::PaletteChange)
        showLevel();
    QFrame::changeEvent(event);
}
