#pragma once

#include <string>

namespace velmoran::scene
{
/// The parts of a channel's target: "node/sid", "node/sid.member", "node/sid(3)(0)".
///
/// Node identifiers may contain dots: the member begins behind the first slash.
struct ChannelTarget
{
    explicit ChannelTarget(const std::string& target);

    std::string nodeId;  ///< up to the first "/"; all of it when there is none
    std::string path;    ///< behind the first "/"
    std::string sid;     ///< the path up to the first "." or "("
    std::string member;  ///< behind the first "." of the path
    std::string indices; ///< the path from its first "(" on, when no "." stands before it
};
} // namespace velmoran::scene
