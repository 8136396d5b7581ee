#pragma once

#include "core/AwakeController.h"
#include "core/AwakeMode.h"

#include <memory>

#include <QList>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace vigilo {

/// What the main window shows and does: every text of it, computed from the controller and from the
/// user's choice of duration and mode. The QML side only places and binds.
class VigiloView : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(VigiloViewModel)
    QML_UNCREATABLE("The program makes it.")
    Q_PROPERTY(bool isActive READ isActive NOTIFY isActiveChanged)
    Q_PROPERTY(QString pillText READ pillText NOTIFY isActiveChanged)
    Q_PROPERTY(QString heroSymbol READ heroSymbol NOTIFY isActiveChanged)
    Q_PROPERTY(QString headline READ headline NOTIFY isActiveChanged)
    Q_PROPERTY(QString statusText READ statusText NOTIFY statusTextChanged)
    Q_PROPERTY(QString actionTitle READ actionTitle NOTIFY isActiveChanged)
    Q_PROPERTY(QString actionSymbol READ actionSymbol NOTIFY isActiveChanged)
    Q_PROPERTY(QString activeModeTitle READ activeModeTitle NOTIFY activeModeChanged)
    Q_PROPERTY(QString activeModeSymbol READ activeModeSymbol NOTIFY activeModeChanged)
    Q_PROPERTY(QString durationText READ durationText NOTIFY durationChanged)
    Q_PROPERTY(QList<QString> durationRows READ durationRows CONSTANT)
    Q_PROPERTY(int durationIndex READ durationIndex NOTIFY durationChanged)
    Q_PROPERTY(QString modeTitle READ modeTitle NOTIFY modeChanged)
    Q_PROPERTY(QString modeSymbol READ modeSymbol NOTIFY modeChanged)
    Q_PROPERTY(QList<QString> modeRows READ modeRows CONSTANT)
    Q_PROPERTY(QList<QString> modeRowSymbols READ modeRowSymbols CONSTANT)
    Q_PROPERTY(int modeIndex READ modeIndex NOTIFY modeChanged)

public:
    explicit VigiloView(std::shared_ptr<AwakeController> controller);

    double selectedMinutes() const { return selectedMinutes_; }
    AwakeMode selectedScreenMode() const { return selectedScreenMode_; }
    void selectMinutes(double minutes);
    void selectScreenMode(AwakeMode mode);

    /// Starts a session of the chosen length in the chosen mode, or ends the running one.
    Q_INVOKABLE void pressAction();

    /// Chooses a row of the duration menu by its index; an index outside it is ignored.
    Q_INVOKABLE void chooseDuration(int index);

    /// Chooses a row of the mode menu by its index; an index outside it is ignored.
    Q_INVOKABLE void chooseMode(int index);

    bool isActive() const { return shown_.isActive; }
    QString pillText() const;
    QString heroSymbol() const;
    QString headline() const;
    QString statusText() const { return shown_.statusText; }
    QString actionTitle() const;
    QString actionSymbol() const;
    QString activeModeTitle() const;
    QString activeModeSymbol() const;
    QString durationText() const;
    static QList<QString> durationRows();
    int durationIndex() const; ///< of the checked row; -1 when none is
    QString modeTitle() const;
    QString modeSymbol() const;
    static QList<QString> modeRows();
    static QList<QString> modeRowSymbols();
    int modeIndex() const;

Q_SIGNALS:
    void isActiveChanged();
    void statusTextChanged();
    void activeModeChanged();
    void durationChanged();
    void modeChanged();

private:
    /// What is read from the controller, as shown now.
    struct Shown {
        bool isActive = false;
        QString statusText;
        AwakeMode activeMode = AwakeMode::visible;
    };

    Shown read() const;
    void readLater();
    void readAgain();

    std::shared_ptr<AwakeController> controller_;
    double selectedMinutes_;
    AwakeMode selectedScreenMode_ = AwakeMode::agentLock;
    Shown shown_;
    bool willRead_ = false;
    Observable::Observation observation_;
};

} // namespace vigilo
