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

} // namespace vigilo
