// What the companion tells its caller when it ends.
#pragma once

#include <QLatin1StringView>

#include <array>

enum class ExitCode {
    Done = 0,
    DoneWithErrors = 1,
    DoneWithFindings = DoneWithErrors,
    WrongUsage = 2,
    Refused = 3,
    FilesMissing = 4,
    WouldChange = 5,
    StoppedByHangup = 129,
    StoppedByInterrupt = 130,
    StoppedByTermination = 143,
};

struct ExitCodeRow
{
    ExitCode code;
    QLatin1StringView meaning;
};

/// The exit codes as help and documentation show them.
inline constexpr std::array exitCodes{
    ExitCodeRow{ExitCode::Done, QLatin1StringView("done")},
    ExitCodeRow{ExitCode::DoneWithErrors, QLatin1StringView("done, with error reports or findings")},
    ExitCodeRow{ExitCode::WrongUsage, QLatin1StringView("wrong usage")},
    ExitCodeRow{ExitCode::Refused, QLatin1StringView("refused, nothing was touched")},
    ExitCodeRow{ExitCode::FilesMissing,
                QLatin1StringView("copying back failed, or an image file is missing")},
    ExitCodeRow{ExitCode::WouldChange, QLatin1StringView("--fail-on-changes: a run would change a screen")},
    ExitCodeRow{ExitCode::StoppedByHangup, QLatin1StringView("stopped by SIGHUP")},
    ExitCodeRow{ExitCode::StoppedByInterrupt, QLatin1StringView("stopped by SIGINT")},
    ExitCodeRow{ExitCode::StoppedByTermination, QLatin1StringView("stopped by SIGTERM")},
};

/// The code of a run that a signal stopped.
constexpr ExitCode stoppedBy(int signalNumber)
{
    constexpr int firstSignalCode = 128;
    return static_cast<ExitCode>(firstSignalCode + signalNumber);
}
