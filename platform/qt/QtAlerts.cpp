#include "platform/qt/QtAlerts.h"

#include <QMessageBox>

namespace vigilo::platform {

namespace {

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

} // namespace

void QtAlerts::warn(std::string_view message, std::string_view informativeText) {
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Vigilo"), text(message));
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(text(informativeText));
    box.exec();
}

} // namespace vigilo::platform
