#include "platform/linux/workspace/SettingsProgram.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>

namespace vigilo::platform {

namespace {

QString installedPath(std::string_view program) {
    return QStandardPaths::findExecutable(
        QString::fromUtf8(program.data(), static_cast<qsizetype>(program.size())));
}

} // namespace

bool isInstalled(std::string_view program) {
    return !installedPath(program).isEmpty();
}

void startSettings(const Command& command) {
    if (command.empty()) {
        return;
    }
    QStringList arguments;
    for (std::size_t index = 1; index < command.size(); ++index) {
        arguments << QString::fromStdString(command[index]);
    }
    QProcess program;
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    // What we have set for our covers would keep some windows of that program from being shown.
    variables.remove(QStringLiteral("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT"));
    program.setProcessEnvironment(variables);
    program.setProgram(installedPath(command.front()));
    program.setArguments(arguments);
    program.setStandardInputFile(QProcess::nullDevice());
    program.setStandardOutputFile(QProcess::nullDevice());
    program.setStandardErrorFile(QProcess::nullDevice());
    program.startDetached();
}

} // namespace vigilo::platform
