#pragma once

#include <cstdint>
#include <memory>
#include <string>

struct xkb_compose_state;
struct xkb_compose_table;
struct xkb_context;

namespace vigilo::platform {

class SecretText;

/// Characters that take several keys, a dead one or Compose first. The toolkit composes for fields
/// only that input methods may listen to. Main thread.
class ComposeKeys {
public:
    enum class Outcome {
        ordinary,  ///< the key stands for itself
        composing, ///< it has begun a character or goes on with it
        composed,  ///< it has completed one
        cancelled  ///< it has broken one off and stands for itself
    };

    /// With the compositions of a locale such as "de_DE.UTF-8", or those most usual where the
    /// system has none for it.
    explicit ComposeKeys(std::string locale);
    ~ComposeKeys();
    ComposeKeys(const ComposeKeys&) = delete;
    ComposeKeys& operator=(const ComposeKeys&) = delete;

    /// Whether a key, as an X11 keysym, may be the first of several: it stands for nothing itself.
    static bool begins(std::uint32_t keysym);

    /// Takes a key that was pressed, as an X11 keysym. Adds what it completes to the text. Reads
    /// the system's table, some ten milliseconds' work, at the first key that begins a character.
    Outcome press(std::uint32_t keysym, SecretText& text);

    /// Forgets what was begun.
    void reset();

private:
    struct Unref {
        void operator()(xkb_context* context) const;
        void operator()(xkb_compose_table* table) const;
        void operator()(xkb_compose_state* state) const;
    };

    void readTable();
    void append(SecretText& text) const;

    std::string locale_;
    bool isRead_ = false;
    std::unique_ptr<xkb_compose_state, Unref> state_; ///< none without a table
};

} // namespace vigilo::platform
