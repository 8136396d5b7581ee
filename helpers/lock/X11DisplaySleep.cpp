#include "helpers/lock/X11DisplaySleep.h"

#include <cstdlib>
#include <memory>

#include <xcb/dpms.h>
#include <xcb/xcb.h>

namespace vigilo {

void sleepX11Displays() {
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> server(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    if (xcb_connection_has_error(server.get()) != 0) {
        return;
    }
    const xcb_query_extension_reply_t* const extension =
        xcb_get_extension_data(server.get(), &xcb_dpms_id);
    if (extension == nullptr || extension->present == 0) {
        return;
    }
    // A level can be forced only where DPMS is enabled, and screen savers switch it off at times.
    xcb_dpms_enable(server.get());
    xcb_dpms_force_level(server.get(), XCB_DPMS_DPMS_MODE_OFF);
    // An answer means that the server has carried out what came before.
    std::free(xcb_get_input_focus_reply(server.get(), xcb_get_input_focus(server.get()), nullptr));
}

} // namespace vigilo
