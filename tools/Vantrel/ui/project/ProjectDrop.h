// Projects that are dropped onto the window.
#pragma once

#include <QObject>
#include <QString>

#include <functional>

class QLineEdit;
class QWidget;

/// Lets the user drop a project folder, or something inside one, onto a window: `open` is called
/// with the project. Nothing that is dropped is moved or changed. Other drops are left to the
/// widgets. Belongs to the window; GUI thread.
class ProjectDrop final : public QObject
{
public:
    using Open = std::function<void(const QString &project)>;

    /// The line lies in the window.
    ProjectDrop(QWidget &window, QLineEdit &projectLine, Open open);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Open m_open;
};
