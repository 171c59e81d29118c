// A user at the window, for one step: starts a run over a project, cancels it, answers what is asked.
#include "StartedWindow.h"

#include <QApplication>
#include <QTest>

#include <array>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 20'000; // milliseconds

enum Exit { Ended = 0, WrongUsage = 2, NothingTouched = 3, StillAtIt = 9 };

/// Presses Cancel when that many screens have been named.
void cancelAt(int screens, StartedWindow &window, QObject &context)
{
    const auto named = std::make_shared<int>(0);
    QObject::connect(
        window->converter.get(), &Converter::sigUpdFileName, &context,
        [=, &window] {
            if (++*named == screens && window->running)
                StartedWindow::press(window->ui.btnStart);
        },
        Qt::QueuedConnection);
}

int perform(const QString &projectDir, const QSet<QString> &shapes, const QString &answer, int screens)
{
    StartedWindow window(projectDir, shapes);
    QObject context;
    if (screens > 0)
        cancelAt(screens, window, context);
    const auto hasRun = [&window] { return !window->running && window->logMessages().contains(u"End"_s); };
    if (!QTest::qWaitFor([&] { return window.question() != nullptr || window.end() != nullptr || hasRun(); },
                         patience))
        return StillAtIt;
    if (window.question() == nullptr)
        return Ended;

    // Where nothing can be decided, it can only be closed.
    QPushButton *chosen = window.button(answer);
    const bool isBegun = chosen != nullptr && answer != "btnCancel"_L1;
    StartedWindow::press(isBegun ? chosen : window.button(u"btnCancel"_s));
    if (!isBegun)
        return NothingTouched;
    return QTest::qWaitFor([&] { return window.end() != nullptr || hasRun(); }, patience) ? Ended : StillAtIt;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    constexpr qsizetype count = 5;
    if (arguments.size() != count) {
        std::fputs(
            "usage: vantrel_window_step PROJECT SHAPE,... btnPutBack|btnComplete|btnCancel SCREENS\n"
            "Starts a run, answers a question by that button, and cancels at so many screens; 0 for never.\n",
            stderr);
        return WrongUsage;
    }
    const QStringList shapes = arguments.at(2).split(u',', Qt::SkipEmptyParts);
    return perform(arguments.at(1), {shapes.cbegin(), shapes.cend()}, arguments.at(3),
                   arguments.at(4).toInt());
}
