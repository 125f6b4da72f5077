#include "examples/collada/PhysicsFrame.h"

#include "examples/collada/Values.h"

#include <string_view>

namespace velmoran::examples::collada
{
namespace
{
constexpr double RADIANS_PER_DEGREE = 0.017453292519943295;

Eigen::Vector3d toVector(const std::vector<float>& values)
{
    return {values[0], values[1], values[2]};
}

Eigen::AngleAxisd readRotation(const Document& document, const pugi::xml_node& element)
{
    const std::vector<float> values = readFloats(document, element, 4);
    const Eigen::Vector3d axis = toVector(values).stableNormalized();
    return axis.isZero() ? Eigen::AngleAxisd::Identity()
                         : Eigen::AngleAxisd(RADIANS_PER_DEGREE * double(values[3]), axis);
}
} // namespace

PhysicsFrame readFrame(const Document& document, const pugi::xml_node& parent)
{
    Eigen::Quaterniond turn = Eigen::Quaterniond::Identity();
    Eigen::Vector3d place = Eigen::Vector3d::Zero();
    PhysicsFrame frame;
    bool isFirst = true;
    for (const pugi::xml_node& child : parent.children())
    {
        const std::string_view name = child.name();
        if (name == "translate")
        {
            place += turn * toVector(readFloats(document, child, 3));
        }
        else if (name == "rotate")
        {
            const Eigen::AngleAxisd rotation = readRotation(document, child);
            turn = turn * rotation;
            frame.rotation = (isFirst ? rotation : Eigen::AngleAxisd(turn)).cast<float>();
            isFirst = false;
        }
    }
    frame.translation = Eigen::Translation<float, 3>(place.cast<float>());
    return frame;
}
} // namespace velmoran::examples::collada
