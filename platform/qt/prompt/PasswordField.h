#pragma once

#include "platform/linux/authentication/SecretText.h"
#include "platform/qt/prompt/ComposeKeys.h"

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace vigilo::platform {

/// Takes a password from the keyboard or the clipboard, character by character, straight into
/// memory that is kept secret; nothing else, no input method either, gets to see it. How many
/// characters there are is all that can be shown.
class PasswordField : public QQuickItem {
    Q_OBJECT
    Q_PROPERTY(int length READ length NOTIFY edited)
    QML_ELEMENT

public:
    explicit PasswordField(QQuickItem* parent = nullptr);

    SecretText& text() { return text_; }
    int length() const { return static_cast<int>(text_.length()); }

    Q_INVOKABLE void clear();

Q_SIGNALS:
    void edited();    ///< a key was pressed or the text has changed
    void submitted(); ///< Enter
    void cancelled(); ///< Esc

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    bool compose(const QKeyEvent& event);
    bool edit(const QKeyEvent& event);
    void paste();

    SecretText text_;
    ComposeKeys composeKeys_;
};

} // namespace vigilo::platform
