#pragma once

#include "platform/Screens.h"

#include <functional>

#include <QObject>
#include <QTimer>

class QScreen;

namespace vigilo::platform {

/// The displays as Qt knows them; one without a size (the toolkit's stand-in while there is none,
/// or one that is still being set up) does not count. Needs the application object.
class QtScreens : public QObject, public Screens {
    Q_OBJECT

public:
    QtScreens();

    std::vector<Screen> screens() const override;
    void observe(std::function<void()> onChange) override { onChange_ = std::move(onChange); }

    /// The one of this name; null when it is not attached any more.
    static QScreen* find(const std::string& name);

private:
    void watch(QScreen* screen);
    void report();

    std::function<void()> onChange_;
    std::vector<Screen> reported_;
    QTimer reportTimer_; ///< several changes come at once
};

} // namespace vigilo::platform
