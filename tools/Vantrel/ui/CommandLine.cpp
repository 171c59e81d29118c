// The command line of the program.
#include "CommandLine.h"

#include "EscapedText.h"
#include "ProjectFolder.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int wrongUsage = 2;

constexpr QLatin1StringView helpText = R"(Usage: vantrel [options] [PROJECT_DIR]

Opens the window, with the project of the last time or with PROJECT_DIR. A file or
folder inside a project stands for the project.

Options:
  -h, --help       show this help
  -v, --version    show the version

Options of Qt, such as -platform and -style, are taken as well.
)"_L1;

/// Options that Qt reads and takes away when the application object is made.
struct QtOption
{
    QLatin1StringView name;
    enum { Alone, WithValue } kind;
};

constexpr std::array qtOptions{
    QtOption{"display"_L1, QtOption::WithValue},
    QtOption{"dograb"_L1, QtOption::Alone},
    QtOption{"geometry"_L1, QtOption::WithValue},
    QtOption{"icon"_L1, QtOption::WithValue},
    QtOption{"name"_L1, QtOption::WithValue},
    QtOption{"nograb"_L1, QtOption::Alone},
    QtOption{"platform"_L1, QtOption::WithValue},
    QtOption{"platformpluginpath"_L1, QtOption::WithValue},
    QtOption{"platformtheme"_L1, QtOption::WithValue},
    QtOption{"plugin"_L1, QtOption::WithValue},
    QtOption{"qwindowgeometry"_L1, QtOption::WithValue},
    QtOption{"qwindowicon"_L1, QtOption::WithValue},
    QtOption{"qwindowtitle"_L1, QtOption::WithValue},
    QtOption{"reverse"_L1, QtOption::Alone},
    QtOption{"session"_L1, QtOption::WithValue},
    QtOption{"style"_L1, QtOption::WithValue},
    QtOption{"stylesheet"_L1, QtOption::WithValue},
    QtOption{"title"_L1, QtOption::WithValue},
    QtOption{"visual"_L1, QtOption::WithValue},
    QtOption{"widgetcount"_L1, QtOption::Alone},
};

CommandLine printed(const QString &text)
{
    return {CommandLine::PrintAndEnd, text, {}};
}

CommandLine refused(const QString &reason)
{
    return {CommandLine::RefuseAndEnd, u"vantrel: %1; see \"vantrel --help\"\n"_s.arg(escaped(reason)), {}};
}

/// How many arguments from `index` on are an option of Qt, with its value; 0 if it is none.
///     {"-platform", "offscreen"}  ->  2        {"--style=fusion"}  ->  1
qsizetype qtOptionLength(const QStringList &arguments, qsizetype index)
{
    const QStringView dashed = arguments.at(index);
    const QStringView word = dashed.sliced(dashed.startsWith("--"_L1) ? 2 : 1);
    const qsizetype equals = word.indexOf(u'=');
    const QStringView name = equals < 0 ? word : word.first(equals);
    const auto *option = std::find_if(qtOptions.begin(), qtOptions.end(),
                                      [&](const QtOption &known) { return known.name == name; });
    if (option == qtOptions.end())
        return 0;
    const bool isFollowedByValue =
        option->kind == QtOption::WithValue && equals < 0 && index + 1 < arguments.size();
    return isFollowedByValue ? 2 : 1;
}

CommandLine openedWith(const QStringList &projects)
{
    if (projects.isEmpty())
        return {};
    if (projects.size() > 1)
        return refused(u"\"%1\" was not expected"_s.arg(projects.at(1)));
    const std::optional<QString> folder = projectFolderOf(projects.first());
    if (!folder)
        return refused(u"there is no project \"%1\""_s.arg(projects.first()));
    return {CommandLine::ShowWindow, {}, *folder};
}

} // namespace

QStringList decodedArguments(int count, const char *const *arguments)
{
    QStringList decoded;
    for (int index = 1; index < count; ++index)
        decoded += QFile::decodeName(arguments[index]);
    return decoded;
}

CommandLine readCommandLine(const QStringList &arguments)
{
    QStringList projects;
    for (qsizetype index = 0; index < arguments.size();) {
        const QString &argument = arguments.at(index);
        if (argument == "--help"_L1 || argument == "-h"_L1)
            return printed(helpText);
        if (argument == "--version"_L1 || argument == "-v"_L1)
            return printed("vantrel " VANTREL_VERSION "\n"_L1);
        if (argument == "--"_L1)
            return openedWith(projects + arguments.sliced(index + 1));

        const bool isOption = argument.startsWith(u'-') && argument.size() > 1;
        const qsizetype length = isOption ? qtOptionLength(arguments, index) : 1;
        if (length == 0)
            return refused(u"unknown option \"%1\""_s.arg(argument));
        if (!isOption)
            projects += argument;
        index += length;
    }
    return openedWith(projects);
}

int endBefore(const CommandLine &commandLine)
{
    const bool isRefused = commandLine.wish == CommandLine::RefuseAndEnd;
    std::fputs(commandLine.text.toLocal8Bit().constData(), isRefused ? stderr : stdout);
    return isRefused ? wrongUsage : 0;
}
