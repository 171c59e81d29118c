// Failures that would end the process by force.
#include "Failures.h"

#include "EscapedText.h"

#include <QStringList>
#include <QtGlobal>

#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
#include <system_error>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

QtMessageHandler handlerBefore = nullptr;
const char *lastMessage = "";
int lastExitCode = 0;

/// Takes no memory: there may be none.
[[noreturn]] void end()
{
    [[maybe_unused]] const auto written = write(STDERR_FILENO, lastMessage, std::strlen(lastMessage));
    std::_Exit(lastExitCode);
}

/// Line ends stay: Qt's own texts have them.
QString escapedLines(const QString &text)
{
    QStringList lines = text.split(u'\n');
    for (QString &line : lines)
        line = escaped(line);
    return lines.join(u'\n');
}

void tell(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    handlerBefore(type, context, escapedLines(text));
    if (type == QtFatalMsg)
        end();
}

} // namespace

QString handledFailure()
{
    try {
        throw;
    } catch (const std::bad_alloc &) {
        return u"there is not enough memory"_s;
    } catch (const std::system_error &failure) {
        return QString::fromLocal8Bit(failure.code().message().c_str());
    } catch (const std::exception &failure) {
        return QString::fromLocal8Bit(failure.what());
    } catch (...) {
        return u"an unknown failure"_s;
    }
}

void endInsteadOfAborting(const char *message, int exitCode)
{
    lastMessage = message;
    lastExitCode = exitCode;
    std::set_terminate(end);
    handlerBefore = qInstallMessageHandler(tell);
}
