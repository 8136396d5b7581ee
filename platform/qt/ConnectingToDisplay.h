#pragma once

namespace vigilo::platform {

/// Lives while the toolkit connects to the display. A display that refuses, or that hangs up at any
/// later time, then ends the process with one line on standard error and status 1, where the
/// toolkit would abort or say it once from each of its threads. There is one in a program. Main
/// thread only.
class ConnectingToDisplay {
public:
    /// Keeps whatever the toolkit and the libraries below it say from standard error.
    ConnectingToDisplay();
    ~ConnectingToDisplay();
    ConnectingToDisplay(const ConnectingToDisplay&) = delete;
    ConnectingToDisplay& operator=(const ConnectingToDisplay&) = delete;
};

} // namespace vigilo::platform
