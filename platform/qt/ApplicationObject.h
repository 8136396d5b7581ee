#pragma once

#include <array>
#include <memory>
#include <string>

class QGuiApplication;

namespace vigilo::platform {

/// The toolkit's application object, connected to the display. Make it first of all that touches
/// Qt and keep it longest. With no display to connect to, or one that refuses, making it writes one
/// line on standard error and ends the process with status 1.
class ApplicationObject {
public:
    /// `programName` is the program's own path. The toolkit's command-line switches are not looked
    /// at; its environment variables are. Where the session offers both X and Wayland, the one on
    /// which covers hold better is taken (platformChoice()), unless QT_QPA_PLATFORM names one.
    explicit ApplicationObject(char* programName);
    ~ApplicationObject();

    /// Draws everything larger or smaller, by the text scale that the desktop's settings name;
    /// nothing where the display server has told the toolkit already, or the environment has. Call
    /// it before any window is made.
    static void scale(double textScale);

    /// By which the desktop knows that this start goes on, where it waits for its end; else empty.
    /// The toolkit takes it out of the environment.
    const std::string& startupId() const { return startupId_; }

    /// Runs the event loop until the program is asked to end; returns the exit status.
    int run();

private:
    std::string startupId_;
    // The toolkit keeps references to all of these.
    std::string platformSwitch_ = "-platform";
    std::string platform_;
    int argumentCount_ = 1;
    std::array<char*, 4> arguments_;
    std::unique_ptr<QGuiApplication> application_;
};

} // namespace vigilo::platform
