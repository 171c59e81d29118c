// What the engine writes into the log.
#include "EngineLog.h"

#include "Logger.h"

namespace {

constexpr const char *sourceFile = "tools/Vantrel/Converter";

constexpr unsigned char alertLevel = 1;
constexpr unsigned char errorLevel = 3;
constexpr unsigned char warningLevel = 4;

void log(unsigned char level, const QString &message, LogPlace place)
{
    Qel::Logger::instance()->out(level, message, sourceFile, static_cast<int>(place)).endl();
}

} // namespace

void logAlert(const QString &message, LogPlace place)
{
    log(alertLevel, message, place);
}

void logWarning(const QString &message, LogPlace place)
{
    log(warningLevel, message, place);
}

void logError(const QString &message, LogPlace place)
{
    log(errorLevel, message, place);
}
