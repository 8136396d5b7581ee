#include "platform/linux/workspace/DesktopWorkspace.h"

#include "platform/linux/workspace/LockSettingsCommand.h"

#include <QProcess>
#include <QStandardPaths>

namespace vigilo::platform {

namespace {

QString installedPath(std::string_view program) {
    return QStandardPaths::findExecutable(
        QString::fromUtf8(program.data(), static_cast<qsizetype>(program.size())));
}

void start(const std::vector<std::string>& command) {
    if (command.empty()) {
        return;
    }
    QStringList arguments;
    for (std::size_t index = 1; index < command.size(); ++index) {
        arguments << QString::fromStdString(command[index]);
    }
    QProcess program;
    program.setProgram(installedPath(command.front()));
    program.setArguments(arguments);
    program.setStandardInputFile(QProcess::nullDevice());
    program.setStandardOutputFile(QProcess::nullDevice());
    program.setStandardErrorFile(QProcess::nullDevice());
    program.startDetached();
}

void startLockSettings(int gnomeVersion) {
    start(lockSettingsCommand(
        qEnvironmentVariable("XDG_CURRENT_DESKTOP").toStdString(),
        [](std::string_view program) { return !installedPath(program).isEmpty(); }, gnomeVersion));
}

} // namespace

void DesktopWorkspace::openLockScreenSettings() {
    const QString gnome = installedPath("gnome-control-center");
    if (gnome.isEmpty()) {
        startLockSettings(0);
        return;
    }
    // Its version is asked for without waiting; the panel opens when the answer is there.
    auto* const question = new QProcess;
    question->setProgram(gnome);
    question->setArguments({QStringLiteral("--version")});
    question->setStandardInputFile(QProcess::nullDevice());
    question->setStandardErrorFile(QProcess::nullDevice());
    const auto finish = [question] {
        const QByteArray answer = question->readAllStandardOutput();
        startLockSettings(
            gnomeVersion({answer.constData(), static_cast<std::size_t>(answer.size())}));
        question->deleteLater();
    };
    QObject::connect(question, &QProcess::finished, question, finish);
    QObject::connect(question, &QProcess::errorOccurred, question,
                     [finish](QProcess::ProcessError error) {
                         if (error == QProcess::FailedToStart) {
                             finish();
                         }
                     });
    question->start();
}

} // namespace vigilo::platform
