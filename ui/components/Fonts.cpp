#include "ui/components/Fonts.h"

#include <QFont>
#include <QFontDatabase>
#include <QGuiApplication>

namespace vigilo {

QString Fonts::systemFamily() {
    return QGuiApplication::font().family();
}

QString Fonts::roundedFamily() {
    QString rounded = QStringLiteral("Quicksand");
    // To ask whether it is there costs more than all that is done with the answer.
    QFont::insertSubstitution(rounded, systemFamily());
    return rounded;
}

QString Fonts::monospacedFamily() {
    return QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
}

} // namespace vigilo
