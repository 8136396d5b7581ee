#include "platform/qt/prompt/PasswordField.h"

#include <clocale>
#include <cstring>
#include <string>
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

/// What the toolkit has set by the environment.
std::string currentLocale() {
    const char* const locale = std::setlocale(LC_CTYPE, nullptr);
    return locale != nullptr ? locale : "C";
}

} // namespace

PasswordField::PasswordField(QQuickItem* parent)
    : QQuickItem(parent), composeKeys_(currentLocale()) {
    setFlag(ItemIsFocusScope, false);
    setActiveFocusOnTab(true);
    setFlag(ItemAcceptsInputMethod, false);
}

void PasswordField::clear() {
    text_.clear();
    composeKeys_.reset();
    Q_EMIT edited();
}

void PasswordField::keyPressEvent(QKeyEvent* event) {
    if (compose(*event)) {
        Q_EMIT edited();
        event->accept();
        return;
    }
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

/// Whether the key was part of a character that takes several. One that breaks such a character off
/// does what it always does, but for the one that is meant to take it back.
bool PasswordField::compose(const QKeyEvent& event) {
    switch (composeKeys_.press(event.nativeVirtualKey(), text_)) {
    case ComposeKeys::Outcome::composing:
    case ComposeKeys::Outcome::composed:
        return true;
    case ComposeKeys::Outcome::cancelled:
        return event.key() == Qt::Key_Backspace;
    case ComposeKeys::Outcome::ordinary:
        break;
    }
    return false;
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
    const QString utf8 = QStringLiteral("text/plain;charset=utf-8");
    // On X11 other programs offer it by names of their own, which the toolkit knows as plain text.
    const PassingText pasted(
        data->data(data->hasFormat(utf8) ? utf8 : QStringLiteral("text/plain")));
    // One line at most: what is copied from a password manager often ends with one.
    text_.append(pasted.view().substr(0, pasted.view().find_first_of("\r\n")));
}

} // namespace vigilo::platform
