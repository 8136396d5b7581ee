#include "platform/linux/workspace/DesktopWorkspace.h"

#include "platform/linux/workspace/LockSettingsCommand.h"
#include "platform/linux/workspace/SettingsProgram.h"

#include <QProcess>

namespace vigilo::platform {

namespace {

void startLockSettings(int gnomeVersion) {
    startSettings(lockSettingsCommand(qEnvironmentVariable("XDG_CURRENT_DESKTOP").toStdString(),
                                      isInstalled, gnomeVersion));
}

} // namespace

void DesktopWorkspace::openLockScreenSettings() {
    constexpr auto gnome = "gnome-control-center";
    if (!isInstalled(gnome)) {
        startLockSettings(0);
        return;
    }
    // Its version is asked for without waiting; the panel opens when the answer is there.
    auto* const question = new QProcess;
    question->setProgram(QString::fromLatin1(gnome));
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
