// What the companion tells its caller when it ends.
#pragma once

#include <QLatin1StringView>

#include <algorithm>
#include <array>

enum class ExitCode {
    Done = 0,
    DoneWithErrors = 1,
    DoneWithFindings = DoneWithErrors,
    WrongUsage = 2,
    Refused = 3,
    FilesMissing = 4,
    WouldChange = 5,
    Different = WouldChange,
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
    ExitCodeRow{ExitCode::Done, QLatin1StringView("done, or nothing to tell")},
    ExitCodeRow{ExitCode::DoneWithErrors,
                QLatin1StringView("done with error reports; hints (check, diff); unusable shapes (shapes)")},
    ExitCodeRow{ExitCode::WrongUsage, QLatin1StringView("wrong usage")},
    ExitCodeRow{
        ExitCode::Refused,
        QLatin1StringView("refused, nothing was touched; obstacles (check, shapes, diff); no such project")},
    ExitCodeRow{ExitCode::FilesMissing,
                QLatin1StringView("a screen is not in \"scr\" after a run, copying back failed, or a run is "
                                  "left over")},
    ExitCodeRow{ExitCode::WouldChange,
                QLatin1StringView("a run would change a screen (--fail-on-changes), shapes are outdated "
                                  "(shapes), screens differ (diff)")},
    ExitCodeRow{ExitCode::StoppedByHangup, QLatin1StringView("stopped by SIGHUP")},
    ExitCodeRow{ExitCode::StoppedByInterrupt, QLatin1StringView("stopped by SIGINT")},
    ExitCodeRow{ExitCode::StoppedByTermination, QLatin1StringView("stopped by SIGTERM")},
};

/// Which code a command ends with where several hold: the last of them.
inline constexpr std::array exitCodesByWeight{ExitCode::Done, ExitCode::DoneWithErrors, ExitCode::WouldChange,
                                              ExitCode::Refused, ExitCode::FilesMissing};

/// The weightier of two codes, both of exitCodesByWeight.
constexpr ExitCode weightier(ExitCode one, ExitCode other)
{
    const auto *const first = std::find(exitCodesByWeight.begin(), exitCodesByWeight.end(), one);
    const auto *const second = std::find(exitCodesByWeight.begin(), exitCodesByWeight.end(), other);
    return first < second ? other : one;
}

/// The code of a run that a signal stopped.
constexpr ExitCode stoppedBy(int signalNumber)
{
    constexpr int firstSignalCode = 128;
    return static_cast<ExitCode>(firstSignalCode + signalNumber);
}
