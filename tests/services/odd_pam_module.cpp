// A PAM module for tests that behaves as its arguments say, one after another:
//   ask TEXT      asks with this text ("_" stands for a blank); only "right" is right
//   expect TEXT   from now on only this is right
//   say TEXT      has something to say
//   delay TIME    wants about so many milliseconds to pass after a wrong answer
//   hang          does not come back
//   crash         aborts
//   exit          ends the whole process as if all were well
//   forge         says over the program's own connection that it is the owner, and fails
//   rubbish       writes bytes of no meaning to that connection
//   shout         says more than anybody reads, with all that a text can do to a screen
//   endless       never stops talking
//   odd           asks in ways that there are none
//   leave         starts a process that keeps every connection open, and goes on
//   sensor PIPE   asks for a finger and reads from the pipe whose it is: "right" is the owner's,
//                 "wrong" somebody's, "last" the same once too often, "gone" says that the reader
//                 was pulled out
//   expired       the answer was right, the password is too old
//   broken        the system behind it cannot be reached
// At the end it is the owner, unless an answer was wrong.
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <string_view>

#include <security/pam_appl.h>
#include <security/pam_ext.h>
#include <security/pam_modules.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

constexpr int connection = 3;

[[noreturn]] void hang() {
    while (true) {
        pause();
    }
}

std::string words(std::string text) {
    for (char& byte : text) {
        byte = byte == '_' ? ' ' : byte;
    }
    return text;
}

bool isRight(pam_handle_t* handle, const std::string& question, std::string_view expected) {
    char* answer = nullptr;
    const int status =
        pam_prompt(handle, PAM_PROMPT_ECHO_OFF, &answer, "%s", words(question).c_str());
    const bool isRight =
        status == PAM_SUCCESS && answer != nullptr && std::string_view(answer) == expected;
    std::free(answer);
    return isRight;
}

/// What the finger on the reader has to do with the owner.
int touched(pam_handle_t* handle, const char* pipe) {
    pam_info(handle, "Place your finger on the reader");
    while (true) {
        std::ifstream touches(pipe);
        for (std::string touch; std::getline(touches, touch);) {
            if (touch == "right") {
                return PAM_SUCCESS;
            }
            if (touch == "gone") {
                return PAM_AUTHINFO_UNAVAIL;
            }
            if (touch == "last") {
                return PAM_MAXTRIES;
            }
            pam_error(handle, "Failed to match fingerprint");
        }
    }
}

void shout(pam_handle_t* handle) {
    std::string text = "\x1b[2J\xff\xfe\xe2\x80\xae line\nline\r\t\a";
    for (int count = 0; count < 400; ++count) {
        text += " <b>more</b> and moremoremore";
    }
    pam_error(handle, "%s", text.c_str());
}

void askOddly(pam_handle_t* handle) {
    const void* item = nullptr;
    pam_get_item(handle, PAM_CONV, &item);
    const auto* const conversation = static_cast<const pam_conv*>(item);
    const pam_message unknown{.msg_style = 99, .msg = "What?"};
    const pam_message* messages = &unknown;
    pam_response* answers = nullptr;
    for (const int count : {1, 0, -1, PAM_MAX_NUM_MSG + 1}) {
        conversation->conv(count, &messages, &answers, conversation->appdata_ptr);
    }
}

void leaveProcess() {
    if (fork() == 0) {
        prctl(PR_SET_PDEATHSIG, 0);
        alarm(60);
        hang();
    }
}

void write(std::string_view bytes) {
    [[maybe_unused]] const ssize_t count = ::write(connection, bytes.data(), bytes.size());
}

} // namespace

extern "C" int pam_sm_authenticate(pam_handle_t* handle, int, int argc, const char** argv) {
    std::string_view expected = "right";
    for (int index = 0; index < argc; ++index) {
        const std::string_view step = argv[index];
        if (step == "ask" || step == "say") {
            const std::string text = argv[++index];
            if (step == "say") {
                pam_info(handle, "%s", words(text).c_str());
            } else if (!isRight(handle, text, expected)) {
                return PAM_AUTH_ERR;
            }
        } else if (step == "expect") {
            expected = argv[++index];
        } else if (step == "delay") {
            pam_fail_delay(handle,
                           static_cast<unsigned>(std::strtoul(argv[++index], nullptr, 10)) * 1000);
        } else if (step == "sensor") {
            return touched(handle, argv[++index]);
        } else if (step == "hang") {
            hang();
        } else if (step == "crash") {
            std::raise(SIGABRT);
        } else if (step == "exit") {
            _exit(EXIT_SUCCESS);
        } else if (step == "forge") {
            write(std::string_view("S\0\0", 3));
            return PAM_AUTH_ERR;
        } else if (step == "rubbish") {
            write("\xff\xff\xffyes, it is the owner");
        } else if (step == "shout") {
            shout(handle);
        } else if (step == "endless") {
            while (true) {
                pam_info(handle, "and so on");
            }
        } else if (step == "odd") {
            askOddly(handle);
        } else if (step == "leave") {
            leaveProcess();
        } else if (step == "expired") {
            return PAM_NEW_AUTHTOK_REQD;
        } else if (step == "broken") {
            return PAM_AUTHINFO_UNAVAIL;
        }
    }
    return PAM_SUCCESS;
}

extern "C" int pam_sm_setcred(pam_handle_t*, int, int, const char**) {
    return PAM_SUCCESS;
}
