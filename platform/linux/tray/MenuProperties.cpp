#include "platform/linux/tray/MenuProperties.h"

namespace vigilo::platform {

namespace {

/// A single underscore would mark the letter after it as the key that chooses the line.
QString label(const std::string& title) {
    return QString::fromStdString(title).replace(u'_', QStringLiteral("__"));
}

/// Keys have the names of X11 (keysymdef.h); the letters are their own.
QString keyName(char key) {
    return key == ',' ? QStringLiteral("comma") : QString(QChar::fromLatin1(key)).toUpper();
}

/// By the interface's description 0 is off, 1 on, and anything else neither.
int toggleState(CheckState state) {
    switch (state) {
    case CheckState::on:
        return 1;
    case CheckState::mixed:
        return -1;
    case CheckState::none:
    case CheckState::off:
        break;
    }
    return 0;
}

} // namespace

QVariantMap menuProperties(const MenuItem& item) {
    if (item.isSeparator) {
        return {{QStringLiteral("type"), QStringLiteral("separator")}};
    }
    QVariantMap properties{{QStringLiteral("label"), label(item.title)}};
    if (!item.isEnabled) {
        properties.insert(QStringLiteral("enabled"), false);
    }
    if (item.keyEquivalent != '\0') {
        const MenuShortcut shortcut{{QStringLiteral("Control"), keyName(item.keyEquivalent)}};
        properties.insert(QStringLiteral("shortcut"), QVariant::fromValue(shortcut));
    }
    if (item.checkState != CheckState::none) {
        properties.insert(QStringLiteral("toggle-type"), QStringLiteral("checkmark"));
        properties.insert(QStringLiteral("toggle-state"), toggleState(item.checkState));
    }
    return properties;
}

QVariantMap chosenProperties(const QVariantMap& properties, const QStringList& names) {
    if (names.isEmpty()) {
        return properties;
    }
    QVariantMap chosen;
    for (const QString& name : names) {
        if (const auto found = properties.find(name); found != properties.end()) {
            chosen.insert(name, *found);
        }
    }
    return chosen;
}

std::optional<PropertyChange> propertyChange(const QVariantMap& before, const QVariantMap& after) {
    PropertyChange change;
    for (auto property = after.begin(); property != after.end(); ++property) {
        const auto old = before.find(property.key());
        if (old == before.end() || *old != *property) {
            change.updated.insert(property.key(), *property);
        }
    }
    for (auto property = before.begin(); property != before.end(); ++property) {
        if (!after.contains(property.key())) {
            change.removed << property.key();
        }
    }
    if (change.updated.isEmpty() && change.removed.isEmpty()) {
        return std::nullopt;
    }
    return change;
}

} // namespace vigilo::platform
