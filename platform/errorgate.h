#pragma once

#include <functional>
#include <string>
#include <utility>

/// Where errors that no handler expects leave the handlers of windows, timers and
/// notifications: nothing may be thrown through the toolkit's event loop.

/// Gets the text for the person at the screen. The application's reporter shows it
/// and ends the program.
using ErrorReporter = std::function<void(const std::string& report)>;

/// Answers the reporter that was in place. An empty one: errors are thrown on.
ErrorReporter InstallErrorReporter(ErrorReporter reporter);

/// For a catch clause: hands the exception in flight to the reporter, or throws it
/// on when there is none. Errors that come up while another one is being reported
/// (in a timer behind the message box, say) are dropped: the program is ending.
void ReportCurrentError();

/// Runs an event handler; what it throws is reported.
template <typename HANDLER>
void Guarded(HANDLER&& handler) {
    try {
        std::forward<HANDLER>(handler)();
    } catch (...) {
        ReportCurrentError();
    }
}
