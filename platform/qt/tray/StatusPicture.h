#pragma once

#include "platform/linux/tray/StatusNotifierTypes.h"

#include <QImage>
#include <QString>

namespace vigilo::platform {

/// A symbol in a square of `side` pixels as it can stand on any panel: light, with a dark edge. An
/// empty image for an unknown name.
QImage statusPicture(const QString& symbol, int side);

/// The same in the sizes that panels ask for at scales 1, 1.5 and 2.
StatusPixmaps statusPixmaps(const QString& symbol);

} // namespace vigilo::platform
