#pragma once

#include "platform/linux/tray/StatusNotifierTypes.h"

#include <QColor>
#include <QImage>
#include <QString>

namespace vigilo::platform {

/// What a picture is drawn for. Each has an edge of the other kind, so that it is seen on the wrong
/// panel, too.
enum class PanelShade { dark, light };

/// A symbol in a square of `side` pixels; an empty image for an unknown name.
QImage statusPicture(const QString& symbol, int side, PanelShade shade);

/// The shade of a panel of this colour.
PanelShade shadeOf(const QColor& colour);

/// The symbol for dark panels, as most are that draw these themselves, in the sizes that panels ask
/// for at scales 1, 1.5 and 2.
StatusPixmaps statusPixmaps(const QString& symbol);

} // namespace vigilo::platform
