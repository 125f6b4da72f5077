#include "scene/animation/ChannelTarget.h"

#include "scene/animation/ChannelNames.h"

#include <vector>

namespace velmoran::scene
{
namespace
{
constexpr int MATRIX_ROWS = 4;

/// The digits of "(3)(0)"; empty unless the text is made of such and nothing else. No
/// value has more than four rows, so that one digit is enough.
std::vector<int> digitsIn(const std::string& indices)
{
    std::vector<int> digits;
    for (std::size_t i = 0; i < indices.size(); i += 3)
    {
        const bool isIndex = i + 2 < indices.size() && indices[i] == '(' && indices[i + 2] == ')' &&
                             indices[i + 1] >= '0' && indices[i + 1] <= '9';
        if (!isIndex)
        {
            return {};
        }
        digits.push_back(indices[i + 1] - '0');
    }
    return digits;
}
} // namespace

ChannelTarget::ChannelTarget(const std::string& target) : nodeId(target.substr(0, target.find('/')))
{
    if (nodeId.size() == target.size())
    {
        return;
    }
    hasPath = true;
    path = target.substr(nodeId.size() + 1);
    const std::size_t dot = path.find('.');
    if (dot != std::string::npos)
    {
        member = path.substr(dot + 1);
    }
    const std::size_t end = path.find_first_of(".(");
    sid = path.substr(0, end);
    if (end != std::string::npos && path[end] == '(')
    {
        indices = path.substr(end);
    }
}

ChannelMember memberOf(const ChannelTarget& target, bool isMatrix, int size)
{
    if (target.indices.empty() && target.member.empty())
    {
        return {ChannelMember::WHOLE, 0, 0};
    }
    const std::vector<int> digits = digitsIn(target.indices);
    if (isMatrix)
    {
        const bool isElement =
            digits.size() == 2 && digits[0] < MATRIX_ROWS && digits[1] < MATRIX_ROWS;
        return isElement ? ChannelMember{ChannelMember::ELEMENT, digits[0], digits[1]}
                         : ChannelMember();
    }
    int index = -1;
    if (target.indices.empty())
    {
        index = coordinateIndexOf(target.member);
    }
    else if (digits.size() == 1)
    {
        index = digits[0];
    }
    return index >= 0 && index < size ? ChannelMember{ChannelMember::NUMBER, index, 0}
                                      : ChannelMember();
}
} // namespace velmoran::scene
