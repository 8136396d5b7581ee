#include "platform/qt/prompt/PasswordField.h"

#include <cstring>
#include <string_view>

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMimeData>

namespace vigilo::platform {

namespace {

/// UTF-8 that is overwritten at its end.
class PassingText {
public:
    explicit PassingText(QByteArray bytes) : bytes_(std::move(bytes)) {}
    ~PassingText() { explicit_bzero(bytes_.data(), static_cast<std::size_t>(bytes_.size())); }
    PassingText(const PassingText&) = delete;
    PassingText& operator=(const PassingText&) = delete;

    std::string_view view() const {
        return {bytes_.constData(), static_cast<std::size_t>(bytes_.size())};
    }

private:
    QByteArray bytes_;
};

} // namespace

PasswordField::PasswordField(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemIsFocusScope, false);
    setActiveFocusOnTab(true);
    setFlag(ItemAcceptsInputMethod, false);
}

void PasswordField::clear() {
    text_.clear();
    Q_EMIT edited();
}

void PasswordField::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!event->isAutoRepeat()) {
            Q_EMIT submitted();
        }
        break;
    case Qt::Key_Escape:
        Q_EMIT cancelled();
        break;
    default:
        if (!edit(*event)) {
            event->ignore();
            return;
        }
        Q_EMIT edited();
    }
    event->accept();
}

/// Whether the key was one that edits.
bool PasswordField::edit(const QKeyEvent& event) {
    const bool isCommand = event.modifiers().testFlag(Qt::ControlModifier);
    const QString typed = event.text();
    if (event.matches(QKeySequence::Paste)) {
        paste();
    } else if (event.key() == Qt::Key_Backspace && isCommand) {
        text_.clear();
    } else if (event.key() == Qt::Key_Backspace) {
        text_.removeLast();
    } else if (!isCommand && !typed.isEmpty() && typed.front().isPrint()) {
        text_.append(PassingText(typed.toUtf8()).view());
    } else {
        return false;
    }
    return true;
}

void PasswordField::paste() {
    const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
    if (data == nullptr) {
        return;
    }
    const PassingText pasted(data->data(QStringLiteral("text/plain;charset=utf-8")));
    // One line at most: what is copied from a password manager often ends with one.
    text_.append(pasted.view().substr(0, pasted.view().find_first_of("\r\n")));
}

} // namespace vigilo::platform
