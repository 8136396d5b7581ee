#include "platform/linux/power/PowerStatus.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace vigilo::platform {
namespace {

TEST(PowerStatus, saysWhyARequestFailed) {
    const std::vector<std::pair<std::string, std::int32_t>> cases{
        {"AccessDenied", 13},   {"InvalidArgs", 22},   {"ServiceUnknown", 38},
        {"NameHasNoOwner", 38}, {"UnknownMethod", 38}, {"NoServer", 107},
        {"Disconnected", 107},  {"NoReply", 110},      {"Timeout", 110},
        {"LimitsExceeded", 11}, {"Failed", 5}};
    for (const auto& [name, status] : cases) {
        EXPECT_EQ(powerStatus("org.freedesktop.DBus.Error." + name), status) << name;
    }
    EXPECT_EQ(powerStatus("AccessDenied"), 5);
    EXPECT_EQ(powerStatus(""), 5);
}

} // namespace
} // namespace vigilo::platform
