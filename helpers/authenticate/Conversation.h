#pragma once

#include "helpers/authenticate/Frames.h"

#include <string_view>

struct pam_conv;

namespace vigilo::authentication {

/// The descriptor that the program talks over.
inline constexpr int socketDescriptor = 3;

/// Sends a frame; the process ends when nobody is there to read it.
void send(FrameKind kind, std::string_view text);

/// The conversation function that passes PAM's messages on and waits for the answers. An answer
/// that is no proper frame ends the process.
pam_conv conversation();

/// The same without questions: a module that asks one gets an error.
pam_conv conversationWithoutQuestions();

/// For PAM_FAIL_DELAY: passes the delay on instead of waiting for it.
void reportDelay(int status, unsigned microseconds, void* data);

} // namespace vigilo::authentication
