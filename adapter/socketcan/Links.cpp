#include "adapter/socketcan/Links.h"

#include <linux/can.h>
#include <linux/can/netlink.h>

#include <algorithm>
#include <cctype>
#include <system_error>
#include <utility>

namespace socketcan {

namespace {

bool listens(const Link &link)
{
    return (link.modes & CAN_CTRLMODE_LISTENONLY) != 0;
}

bool hasRates(const Link &link, const LinkSettings &settings)
{
    const bool isFdReady = (link.modes & CAN_CTRLMODE_FD) != 0 && link.dataBitrate == settings.dataBitrate;
    return link.bitrate == settings.bitrate && (!settings.isFd() || isFdReady);
}

std::string errorText(int error)
{
    return std::generic_category().message(error);
}

std::string setUpCommand(const Link &link, const LinkSettings &settings)
{
    std::string command = link.isUp ? "ip link set " + link.name + " down; " : std::string();
    command += "ip link set " + link.name + " up type can bitrate " + std::to_string(settings.bitrate);
    if (settings.isFd()) {
        command += " dbitrate " + std::to_string(settings.dataBitrate) + " fd on";
    }
    return command + (settings.listenOnly ? " listen-only on" : listens(link) ? " listen-only off" : "");
}

bool isDigit(char character)
{
    return std::isdigit(static_cast<unsigned char>(character)) != 0;
}

/// The digits from at on without leading zeros; at is behind them then.
std::string takeNumber(const std::string &text, std::size_t &at)
{
    const std::size_t begin = std::min(text.find_first_not_of('0', at), text.size());
    const auto end = std::find_if_not(text.begin() + static_cast<std::ptrdiff_t>(at), text.end(), isDigit);
    at = static_cast<std::size_t>(end - text.begin());
    return begin < at ? text.substr(begin, at - begin) : std::string();
}

Problem noCanFd(const Link &link)
{
    return {AdapterProblemCode::NoCanFd, link.name + " has no CAN FD", {}};
}

} // namespace

bool comesBefore(const std::string &one, const std::string &other)
{
    std::size_t a = 0;
    std::size_t b = 0;
    while (a < one.size() && b < other.size()) {
        if (!isDigit(one[a]) || !isDigit(other[b])) {
            if (one[a] != other[b]) {
                return one[a] < other[b];
            }
            ++a;
            ++b;
            continue;
        }
        const std::string numberA = takeNumber(one, a);
        const std::string numberB = takeNumber(other, b);
        if (numberA != numberB) {
            return numberA.size() != numberB.size() ? numberA.size() < numberB.size() : numberA < numberB;
        }
    }
    const std::size_t leftA = one.size() - a;
    const std::size_t leftB = other.size() - b;
    return leftA != leftB ? leftA < leftB : one < other;
}

bool hasSettings(const Link &link, const LinkSettings &settings)
{
    return link.isUp && hasRates(link, settings) && listens(link) == settings.listenOnly;
}

Problem controllerProblem(const Link &link, const LinkSettings &settings, int error)
{
    Problem problem{AdapterProblemCode::System, {}, setUpCommand(link, settings)};
    if (!link.isUp) {
        problem.code = AdapterProblemCode::IsDown;
        problem.text = link.name + " is down";
    } else if (link.bitrate != settings.bitrate) {
        problem.code = AdapterProblemCode::WrongBitRate;
        problem.text = link.name + " runs at " + std::to_string(link.bitrate) + " bit/s";
    } else if (!hasRates(link, settings)) {
        problem.code = AdapterProblemCode::WrongMode;
        problem.text = (link.modes & CAN_CTRLMODE_FD) == 0
                           ? link.name + " is not in CAN FD mode"
                           : link.name + " has a data rate of " + std::to_string(link.dataBitrate) + " bit/s";
    } else {
        problem.code = AdapterProblemCode::WrongMode;
        problem.text = link.name + " listens only";
    }
    problem.text += ", and changing it was refused: " + errorText(error);
    return problem;
}

Links::Links(LinkTransport &transport)
    : m_transport(transport)
{
}

std::vector<Link> Links::list() const
{
    std::vector<Link> links;
    for (const Bytes &message : m_transport.exchange(linksRequest()).messages) {
        if (std::optional<Link> link = parseLink(message)) {
            links.push_back(std::move(*link));
        }
    }
    std::sort(links.begin(), links.end(),
              [](const Link &one, const Link &other) { return comesBefore(one.name, other.name); });
    return links;
}

std::optional<Link> Links::find(const std::string &name) const
{
    std::vector<Link> links = list();
    const auto found =
        std::find_if(links.begin(), links.end(), [&name](const Link &link) { return link.name == name; });
    return found == links.end() ? std::nullopt : std::optional<Link>(std::move(*found));
}

int Links::change(Bytes request)
{
    return m_transport.exchange(std::move(request)).error;
}

std::variant<Links::Ready, Problem> Links::makeReady(const std::string &name, const LinkSettings &settings)
{
    const std::optional<Link> link = find(name);
    if (!link) {
        return Problem{AdapterProblemCode::NoInterface, "there is no CAN interface " + name, {}};
    }
    if (settings.isFd() && !link->canFd) {
        return noCanFd(*link);
    }
    return link->hasBitTiming ? makeControllerReady(*link, settings) : makeVirtualReady(*link, settings);
}

/// An interface without a bit rate of its own only has to be up, and for CAN FD to have the larger frames.
std::variant<Links::Ready, Problem> Links::makeVirtualReady(const Link &link, const LinkSettings &settings)
{
    const bool needsMtu = settings.isFd() && !link.hasFdMtu;
    if (needsMtu) {
        int error = link.isUp ? change(upRequest(link.index, false)) : 0;
        error = error == 0 ? change(mtuRequest(link.index, CANFD_MTU)) : error;
        if (error != 0) {
            change(upRequest(link.index, link.isUp));
            return Problem{AdapterProblemCode::WrongMode,
                           link.name +
                               " has no room for CAN FD frames, and changing it was refused: " + errorText(error),
                           "ip link set " + link.name + " down; ip link set " + link.name + " mtu 72 up"};
        }
    }
    if (!link.isUp || needsMtu) {
        const int error = change(upRequest(link.index, true));
        if (error != 0) {
            return Problem{AdapterProblemCode::IsDown,
                           link.name + " is down, and bringing it up was refused: " + errorText(error),
                           "ip link set " + link.name + " up"};
        }
    }
    return Ready{link, {}};
}

std::variant<Links::Ready, Problem> Links::makeControllerReady(const Link &link, const LinkSettings &settings)
{
    if (hasSettings(link, settings)) {
        return Ready{link, {}};
    }
    const int error = configure(link, settings);
    if (error == 0) {
        return Ready{find(link.name).value_or(link), {}};
    }
    const bool onlyAcknowledges = link.isUp && hasRates(link, settings) && settings.listenOnly && !listens(link);
    if (onlyAcknowledges) {
        return Ready{link, link.name +
                               " acknowledges frames, and changing it to listen only was refused: " + errorText(error)};
    }
    return controllerProblem(link, settings, error);
}

/// Down, settings, up. Answers the first error, after which the controller is up again if it was.
int Links::configure(const Link &link, const LinkSettings &settings)
{
    if (link.isUp) {
        const int error = change(upRequest(link.index, false));
        if (error != 0) {
            return error;
        }
    }
    int error = change(settingsRequest(link, settings));
    error = error == 0 ? change(upRequest(link.index, true)) : error;
    if (error != 0 && link.isUp) {
        const bool hadListened = listens(link);
        const LinkSettings before{link.bitrate, 0, (link.modes & CAN_CTRLMODE_FD) != 0 ? link.dataBitrate : 0U,
                                  hadListened};
        change(settingsRequest(link, before));
        change(upRequest(link.index, true));
    }
    return error;
}

bool Links::restart(const Link &link)
{
    return change(restartRequest(link)) == 0;
}

} // namespace socketcan
