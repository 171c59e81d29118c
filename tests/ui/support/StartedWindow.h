// A window whose Start was pressed over a project.
#pragma once

#include "LeftOverDialog.h"
#include "RecoveryProgress.h"
#include "TestProject.h"
#include "TestWindow.h"

#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include <memory>

/// The main window, and the dialogs in which it asks about an interrupted run.
class StartedWindow final
{
public:
    explicit StartedWindow(const TestProject &project)
        : StartedWindow(project.dir(), {})
    {
    }

    StartedWindow(const QString &projectDir, const QSet<QString> &shapeNames)
        : m_window(std::make_unique<TestWindow>())
    {
        m_window->show();
        m_window->ui.lnProjectPath->setText(projectDir);
        m_window->selectedFilterNames = shapeNames;
        press(m_window->ui.btnStart);
    }

    TestWindow *operator->() const { return m_window.get(); }
    void destroy() { m_window.reset(); }

    /// What its user sees of each; null where there is nothing.
    LeftOverDialog *question() const { return visible<LeftOverDialog>(QStringLiteral("leftOverDialog")); }
    RecoveryProgress *progress() const
    {
        return visible<RecoveryProgress>(QStringLiteral("recoveryProgress"));
    }
    QMessageBox *end() const { return visible<QMessageBox>(QStringLiteral("recoveryEnd")); }

    /// Of the question: "btnPutBack".
    QPushButton *button(const QString &name) const { return question()->findChild<QPushButton *>(name); }

    static void press(QPushButton *button) { QTest::mouseClick(button, Qt::LeftButton); }

private:
    template <typename Dialog>
    Dialog *visible(const QString &name) const
    {
        const auto dialogs = m_window->findChildren<Dialog *>(name);
        for (Dialog *dialog : dialogs) {
            if (dialog->isVisible())
                return dialog;
        }
        return nullptr;
    }

    std::unique_ptr<TestWindow> m_window;
};
