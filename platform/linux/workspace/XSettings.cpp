#include "platform/linux/workspace/XSettings.h"

#include <cstddef>
#include <optional>

namespace vigilo::platform {

namespace {

constexpr std::uint32_t number = 0;
constexpr std::uint32_t text = 1;
constexpr std::uint32_t colour = 2;

constexpr std::size_t unit = 4;
constexpr std::size_t sizeOfColour = 8;

/// Takes values off the front of bytes; where some are missing, there are none any more.
class Reader {
public:
    explicit Reader(std::string_view bytes) : bytes_(bytes) {
        const std::string_view order = take(unit);
        isBigEndian_ = !order.empty() && order.front() == '\1';
    }

    bool isBroken() const { return isBroken_; }

    std::string_view take(std::size_t size) {
        isBroken_ = isBroken_ || size > bytes_.size();
        const std::string_view taken = isBroken_ ? std::string_view() : bytes_.substr(0, size);
        bytes_.remove_prefix(taken.size());
        return taken;
    }

    /// A text and what fills its last unit up.
    std::string_view takeText(std::size_t size) {
        const std::string_view taken = take(size);
        take((unit - size % unit) % unit);
        return taken;
    }

    std::uint32_t takeNumber(std::size_t size) {
        const std::string_view taken = take(size);
        std::uint32_t value = 0;
        for (std::size_t index = 0; index < taken.size(); ++index) {
            const std::size_t next = isBigEndian_ ? index : taken.size() - 1 - index;
            value = value << 8U | static_cast<std::uint8_t>(taken[next]);
        }
        return value;
    }

private:
    std::string_view bytes_;
    bool isBigEndian_ = false;
    bool isBroken_ = false;
};

} // namespace

XSettings parseXSettings(std::string_view bytes) {
    XSettings settings;
    Reader reader(bytes);
    reader.take(unit); // how often they have changed
    for (std::uint32_t left = reader.takeNumber(unit); left > 0; --left) {
        const std::uint32_t kind = reader.takeNumber(1);
        reader.take(1);
        const std::string_view name = reader.takeText(reader.takeNumber(2));
        reader.take(unit); // since which change it is so
        std::optional<XSettings::mapped_type> value;
        if (kind == number) {
            value = static_cast<std::int32_t>(reader.takeNumber(unit));
        } else if (kind == text) {
            value = reader.takeText(reader.takeNumber(unit));
        } else if (kind == colour) {
            reader.take(sizeOfColour);
        } else {
            break;
        }
        if (reader.isBroken()) {
            break;
        }
        if (value) {
            settings.insert_or_assign(name, *value);
        }
    }
    return settings;
}

} // namespace vigilo::platform
