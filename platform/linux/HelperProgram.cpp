#include "platform/linux/HelperProgram.h"

#include <filesystem>
#include <system_error>

namespace vigilo::platform {

std::string helperPath(std::string_view name) {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return (program.parent_path().parent_path() / "libexec" / "vigilo" / name).string();
}

} // namespace vigilo::platform
