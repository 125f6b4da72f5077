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

    bool hasPath = false; ///< whether there is a "/"; without one the target names nothing
    std::string nodeId;   ///< up to the first "/"; all of it when there is none
    std::string path;     ///< behind the first "/"
    std::string sid;      ///< the path up to its first "." or "("
    std::string member;   ///< behind the first "." of the path
    std::string indices;  ///< the path from its first "(" on, unless a "." stands before it
};

/// Which numbers of a transformation a channel drives.
struct ChannelMember
{
    enum Form
    {
        WHOLE,   ///< all of them
        NUMBER,  ///< number `first`
        ELEMENT, ///< the matrix element with the indices `first` and `second`
        UNKNOWN  ///< the target names none
    };

    Form form = UNKNOWN;
    int first = 0;
    int second = 0;
};

/// What `target` names of a transformation with `size` numbers, a matrix or not.
ChannelMember memberOf(const ChannelTarget& target, bool isMatrix, int size);
} // namespace velmoran::scene
