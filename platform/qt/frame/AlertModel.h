#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace vigilo::platform {

/// A warning and its dismissal, for QML.
class AlertModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes it.")
    Q_PROPERTY(QString message READ message CONSTANT)
    Q_PROPERTY(QString informativeText READ informativeText CONSTANT)

public:
    AlertModel(QString message, QString informativeText);

    const QString& message() const { return message_; }
    const QString& informativeText() const { return informativeText_; }

Q_SIGNALS:
    void dismissed();

private:
    QString message_;
    QString informativeText_;
};

} // namespace vigilo::platform
