#include "helpers/authenticate/Conversation.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include <security/pam_appl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace vigilo::authentication {

namespace {

[[noreturn]] void end() {
    _exit(EXIT_FAILURE);
}

void readExactly(char* buffer, std::size_t size) {
    for (std::size_t done = 0; done < size;) {
        const ssize_t count = read(socketDescriptor, buffer + done, size - done);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            end();
        }
        done += static_cast<std::size_t>(count);
    }
}

/// The answer in memory of its own, as PAM wants it; PAM frees it.
char* readAnswer() {
    std::array<char, headerSize> header{};
    readExactly(header.data(), header.size());
    const std::size_t length =
        static_cast<unsigned char>(header[1]) +
        (static_cast<std::size_t>(static_cast<unsigned char>(header[2])) << 8U);
    if (header[0] != static_cast<char>(FrameKind::answer) || length > longestAnswer) {
        end();
    }
    auto* const answer = static_cast<char*>(std::calloc(1, longestAnswer + 1));
    if (answer == nullptr) {
        end();
    }
    mlock(answer, longestAnswer + 1);
    readExactly(answer, length);
    return answer;
}

void discard(pam_response* responses, int count) {
    for (int index = 0; index < count; ++index) {
        if (responses[index].resp != nullptr) {
            explicit_bzero(responses[index].resp, std::strlen(responses[index].resp));
            std::free(responses[index].resp);
        }
    }
    std::free(responses);
}

bool isQuestion(const pam_message& message) {
    return message.msg_style == PAM_PROMPT_ECHO_OFF || message.msg_style == PAM_PROMPT_ECHO_ON;
}

/// Whether there can be so many messages at all; beyond that nobody knows what follows them.
bool isCount(int count) {
    return count > 0 && count <= PAM_MAX_NUM_MSG;
}

int converse(int count, const pam_message** messages, pam_response** answers, void*) {
    if (!isCount(count)) {
        return PAM_CONV_ERR;
    }
    auto* const responses = static_cast<pam_response*>(
        std::calloc(static_cast<std::size_t>(count), sizeof(pam_response)));
    if (responses == nullptr) {
        return PAM_BUF_ERR;
    }
    for (int index = 0; index < count; ++index) {
        const pam_message& message = *messages[index];
        const std::string_view text = message.msg != nullptr ? message.msg : "";
        switch (message.msg_style) {
        case PAM_PROMPT_ECHO_OFF:
            send(FrameKind::hiddenPrompt, text);
            responses[index].resp = readAnswer();
            break;
        case PAM_PROMPT_ECHO_ON:
            send(FrameKind::visiblePrompt, text);
            responses[index].resp = readAnswer();
            break;
        case PAM_TEXT_INFO:
            send(FrameKind::information, text);
            break;
        case PAM_ERROR_MSG:
            send(FrameKind::error, text);
            break;
        default:
            discard(responses, count);
            return PAM_CONV_ERR;
        }
    }
    // Some modules want no answers to what is no question.
    if (answers != nullptr) {
        *answers = responses;
    } else {
        discard(responses, count);
    }
    return PAM_SUCCESS;
}

int converseWithoutQuestions(int count, const pam_message** messages, pam_response** answers,
                             void* data) {
    if (!isCount(count)) {
        return PAM_CONV_ERR;
    }
    for (int index = 0; index < count; ++index) {
        if (isQuestion(*messages[index])) {
            return PAM_CONV_ERR;
        }
    }
    return converse(count, messages, answers, data);
}

} // namespace

void send(FrameKind kind, std::string_view text) {
    const std::string bytes = encode(kind, text);
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t count = write(socketDescriptor, bytes.data() + done, bytes.size() - done);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            end();
        }
        done += static_cast<std::size_t>(count);
    }
}

pam_conv conversation() {
    return {.conv = converse, .appdata_ptr = nullptr};
}

pam_conv conversationWithoutQuestions() {
    return {.conv = converseWithoutQuestions, .appdata_ptr = nullptr};
}

void reportDelay(int, unsigned microseconds, void*) {
    send(FrameKind::delay, std::to_string(microseconds / 1000));
}

} // namespace vigilo::authentication
