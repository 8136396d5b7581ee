#include "platform/qt/frame/AlertModel.h"

#include <utility>

namespace vigilo::platform {

AlertModel::AlertModel(QString message, QString informativeText)
    : message_(std::move(message)), informativeText_(std::move(informativeText)) {}

} // namespace vigilo::platform
