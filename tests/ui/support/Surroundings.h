// What surrounds the window in a test: its user, its desktop, its settings, Qt's warnings.
#pragma once

#include "TestProject.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTest>
#include <QTimer>
#include <QUrl>
#include <QWidget>

/// Calls `answer` with the next modal dialog of the kind as soon as its event loop runs, and
/// counts it in `answered`. A dialog that does not come is not answered; one of another kind
/// is closed, so that the test fails and does not hang.
template <typename Dialog, typename Answer>
void whenAsked(QObject *context, int &answered, Answer answer)
{
    auto *poll = new QTimer(context);
    const QDeadlineTimer deadline(20'000);
    QObject::connect(poll, &QTimer::timeout, context, [=, &answered] {
        QWidget *modal = QApplication::activeModalWidget();
        if (modal == nullptr && !deadline.hasExpired())
            return;
        poll->stop();
        poll->deleteLater();
        if (auto *dialog = qobject_cast<Dialog *>(modal)) {
            ++answered;
            const QPointer<Dialog> asked = dialog;
            answer(dialog);
            // A check that failed has left it unanswered.
            if (asked && QTest::currentTestFailed())
                asked->close();
        } else if (modal != nullptr) {
            modal->close();
        }
    });
    poll->start(0);
}

/// Writes down Qt's warnings while it lives. At most one at a time.
class WarningRecorder final
{
public:
    WarningRecorder();
    ~WarningRecorder();
    Q_DISABLE_COPY_MOVE(WarningRecorder)

    static QStringList warnings();
};

/// Takes the place of the desktop's default applications while it lives.
class DesktopRecorder final : public QObject
{
    Q_OBJECT

public:
    DesktopRecorder();
    ~DesktopRecorder() override;

    QList<QUrl> opened;

public Q_SLOTS: // NOLINT(readability-redundant-access-specifiers)
    void open(const QUrl &url) { opened += url; }
};

/// Makes the settings those of a user who never ran the program.
void forgetSettings();

/// A copy of the example plant, to be converted.
void copyExamplePlant(const TestProject &project);

/// The class's own signals and slots, in their order: "signal sigStartConvert()".
QStringList ownMethods(const QMetaObject &metaObject);
