// Loaded into sway on outputs without hardware, which cannot be switched off: has sway believe that
// they can. It then takes an output away from its clients as it does with a real one, and gives it
// back under the same name.
#include <dlfcn.h>

#include <set>

namespace {

using Enable = void(void* output, bool enabled);
using Commit = bool(void* output);
using Rollback = void(void* output);

template <typename Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

/// Those that the next commit is to switch off.
std::set<void*>& leaving() {
    static std::set<void*> outputs;
    return outputs;
}

} // namespace

// NOLINTBEGIN(readability-identifier-naming): the names of the library that sway is made with
extern "C" void wlr_output_enable(void* output, bool enabled) {
    static Enable* const real = next<Enable>("wlr_output_enable");
    if (enabled) {
        leaving().erase(output);
    } else {
        leaving().insert(output);
    }
    real(output, enabled);
}

extern "C" bool wlr_output_commit(void* output) {
    static Commit* const real = next<Commit>("wlr_output_commit");
    if (leaving().erase(output) == 0) {
        return real(output);
    }
    static Rollback* const rollBack = next<Rollback>("wlr_output_rollback");
    rollBack(output);
    return true;
}
// NOLINTEND(readability-identifier-naming)
