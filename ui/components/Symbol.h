#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace vigilo {

/// Paints the symbol of a name into a square in one colour; parts that the drawing makes lighter
/// stay lighter, which gives symbols their hierarchical rendering. An unknown name is a programming
/// error.
void paintSymbol(QPainter& painter, const QString& name, const QColor& color, const QRectF& square);

/// One symbol of our family as an item; set its size as for any other.
class Symbol : public QQuickPaintedItem {
    Q_OBJECT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged REQUIRED)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    // "Symbol" alone is taken by the language.
    QML_NAMED_ELEMENT(SymbolIcon)

public:
    explicit Symbol(QQuickItem* parent = nullptr);

    QString name() const { return name_; }
    void setName(const QString& name);

    QColor color() const { return color_; }
    void setColor(const QColor& color);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void nameChanged();
    void colorChanged();

private:
    QString name_;
    QColor color_ = Qt::white;
};

} // namespace vigilo
