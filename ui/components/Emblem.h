#pragma once

#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace vigilo {

/// The program's badge: the bolt shield in white on a rounded ground that runs from blue at the top
/// left to purple at the bottom right.
class Emblem : public QQuickPaintedItem {
    Q_OBJECT
    Q_PROPERTY(double cornerRadius MEMBER cornerRadius_ NOTIFY changed)
    Q_PROPERTY(double symbolSize MEMBER symbolSize_ NOTIFY changed)
    Q_PROPERTY(QColor from MEMBER from_ NOTIFY changed)
    Q_PROPERTY(QColor to MEMBER to_ NOTIFY changed)
    QML_ELEMENT

public:
    explicit Emblem(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    double cornerRadius_ = 0; ///< points
    double symbolSize_ = 0;   ///< points
    QColor from_;
    QColor to_;
};

} // namespace vigilo
