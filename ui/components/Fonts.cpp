#include "ui/components/Fonts.h"

#include <QFontDatabase>
#include <QGuiApplication>

namespace vigilo {

QString Fonts::systemFamily() {
    return QGuiApplication::font().family();
}

QString Fonts::roundedFamily() {
    const QString rounded = QStringLiteral("Quicksand");
    return QFontDatabase::hasFamily(rounded) ? rounded : systemFamily();
}

QString Fonts::monospacedFamily() {
    return QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
}

} // namespace vigilo
