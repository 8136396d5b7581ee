#pragma once

#include "platform/ProcessTable.h"

#include <string>

namespace vigilo::platform {

/// The processes as `ps` lists them, with `lsof` for folders: for systems without /proc, and as the
/// reference that the direct reading is compared with. Blocks while the tools run.
class PsProcessTable : public ProcessTable {
public:
    struct Tools {
        std::string ps;   ///< absolute path
        std::string lsof; ///< absolute path
    };

    PsProcessTable();
    explicit PsProcessTable(Tools tools);

    void visit(const Visitor& visitor) override;

private:
    Tools tools_;
};

} // namespace vigilo::platform
