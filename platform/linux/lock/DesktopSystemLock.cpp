#include "platform/linux/lock/DesktopSystemLock.h"

#include "platform/linux/HelperProgram.h"

#include <QProcess>

namespace vigilo::platform {

void DesktopSystemLock::sleepDisplays() {
    QProcess helper;
    helper.setProgram(QString::fromStdString(helperPath("vigilo-lock")));
    helper.setStandardInputFile(QProcess::nullDevice());
    helper.setStandardOutputFile(QProcess::nullDevice());
    helper.setStandardErrorFile(QProcess::nullDevice());
    helper.startDetached();
}

} // namespace vigilo::platform
