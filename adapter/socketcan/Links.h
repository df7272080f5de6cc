#pragma once

#include "adapter/socketcan/Link.h"
#include "adapter/socketcan/LinkTransport.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace socketcan {

/// The machine's CAN interfaces. From any thread.
class Links
{
public:
    /// transport must outlive this object.
    explicit Links(LinkTransport &transport);

    /// In the order of their names, can2 before can10. Empty, too, when the kernel does not answer.
    std::vector<Link> list() const;
    std::optional<Link> find(const std::string &name) const;

    /// An interface that is up with the settings, or why not; note is for what is not as asked, but no reason to
    /// refuse.
    struct Ready
    {
        Link link;
        std::string note;
    };
    /// Brings an interface up with the settings: as it is when it has them already, otherwise by changing it, if the
    /// process may. What cannot be changed is left as it was found.
    std::variant<Ready, Problem> makeReady(const std::string &name, const LinkSettings &settings);
    /// Brings a controller back that is off the bus; false when the process may not.
    bool restart(const Link &link);

private:
    int change(Bytes request);
    std::variant<Ready, Problem> makeVirtualReady(const Link &link, const LinkSettings &settings);
    std::variant<Ready, Problem> makeControllerReady(const Link &link, const LinkSettings &settings);
    int configure(const Link &link, const LinkSettings &settings);

    LinkTransport &m_transport;
};

/// Whether one name comes before another: digits count as numbers.
bool comesBefore(const std::string &one, const std::string &other);

/// Whether a controller that is up has the settings; whether it restarts by itself does not matter.
bool hasSettings(const Link &link, const LinkSettings &settings);

/// Why a controller could not be used with the settings, after the system refused to change it with this error.
Problem controllerProblem(const Link &link, const LinkSettings &settings, int error);

} // namespace socketcan
