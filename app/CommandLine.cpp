#include "app/CommandLine.h"

#include <algorithm>

namespace vigilo {

Invocation invocation(std::span<const std::string_view> arguments) {
    const auto has = [&](std::string_view argument) {
        return std::find(arguments.begin(), arguments.end(), argument) != arguments.end();
    };
    if (has("--self-test")) {
        return Invocation::selfTest;
    }
    if (has("--help")) {
        return Invocation::help;
    }
    if (has("--version")) {
        return Invocation::version;
    }
    return Invocation::application;
}

std::string_view helpText() {
    return "Usage: vigilo [--self-test | --help | --version]\n"
           "Keeps the computer awake while coding agents and terminal jobs run unattended.\n"
           "\n"
           "  --self-test  run the built-in checks, print the verdict and exit with 0 or 1\n"
           "  --help       print this text\n"
           "  --version    print the version\n"
           "\n"
           "Without a switch the main window opens. Other arguments are ignored.\n";
}

} // namespace vigilo
