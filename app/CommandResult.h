// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace glimmerpane
{

/** How the program ends; the numbers are documented in its manual page. */
enum class ExitCode {
    Succeeded = 0,
    Failed = 1,
    Misused = 2,
};

/** The outcome of a command line. */
struct CommandResult {
    ExitCode exitCode = ExitCode::Succeeded;
    QString output; ///< a line for standard output, or empty
    QString error; ///< a line for standard error, or empty

    static CommandResult failure(const QString &text, ExitCode code = ExitCode::Failed)
    {
        return {.exitCode = code, .output = {}, .error = text.simplified()};
    }
};

} // namespace glimmerpane
