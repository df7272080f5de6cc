#pragma once

#include <string>

namespace va {

/// Why a configuration was refused, and where.
struct ConfigError
{
    int line = 0;        ///< from 1
    std::string key;     ///< path of the key, as in buses[0].nodes[2].id; empty when there is none
    std::string problem; ///< what is wrong, without a full stop

    /// One line for the user: "file:line: key: problem". Control characters are replaced, long texts cut.
    std::string message(const std::string &fileName) const;
};

} // namespace va
