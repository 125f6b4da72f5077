#include "examples/generator/Body.h"

#include <algorithm>
#include <cmath>

namespace velmoran::generator
{
namespace
{
constexpr int WHOLE = 10000; ///< the sum of a point's weights
constexpr std::size_t MAX_INFLUENCES = 4;

using Weights = std::vector<double>; ///< of one point, by joint

Surface makeFirstSurface(const Proportions& p, const std::vector<Joint>& skeleton,
                         const BodyField& field, double edge)
{
    double reach = 0.0;
    for (const Joint& joint : skeleton)
    {
        reach = std::max(reach, joint.position.x);
    }
    const double top = skeleton[4].position.y + p.skull;
    const Vec3 low{-reach - 0.15, -0.06, -0.3};
    const Vec3 high{reach + 0.15, top + 0.06, 0.3};
    Surface surface = makeSurface(field, low, high, edge);
    relax(surface, field, 3);
    return surface;
}

/// Blends from joint to joint: each point starts with the joint whose limb is nearest,
/// then shares again and again with its neighbours on the surface. Limbs that are
/// close in space, but not on the surface, stay apart.
std::vector<Weights> spreadWeights(const Surface& surface, const BodyField& field,
                                   std::size_t jointCount, int rounds)
{
    std::vector<Weights> weights(surface.points.size(), Weights(jointCount, 0.0));
    for (std::size_t i = 0; i < weights.size(); ++i)
    {
        weights[i][static_cast<std::size_t>(field.jointAt(surface.points[i]))] = 1.0;
    }
    const std::vector<std::vector<int>> around = neighbours(surface);
    for (int round = 0; round < rounds; ++round)
    {
        std::vector<Weights> next = weights;
        for (std::size_t i = 0; i < weights.size(); ++i)
        {
            const double share = 0.5 / static_cast<double>(around[i].size());
            for (std::size_t joint = 0; joint < jointCount; ++joint)
            {
                double sum = 0.5 * weights[i][joint];
                for (const int neighbour : around[i])
                {
                    sum += share * weights[static_cast<std::size_t>(neighbour)][joint];
                }
                next[i][joint] = sum;
            }
        }
        weights.swap(next);
    }
    return weights;
}

/// The largest weights of a point as whole numbers that sum to `WHOLE`.
std::vector<Influence> strongest(const Weights& weights)
{
    std::vector<std::size_t> order;
    for (std::size_t joint = 0; joint < weights.size(); ++joint)
    {
        if (weights[joint] >= 0.02)
        {
            order.push_back(joint);
        }
    }
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return weights[a] > weights[b]; });
    order.resize(std::min(order.size(), MAX_INFLUENCES));
    double sum = 0.0;
    for (const std::size_t joint : order)
    {
        sum += weights[joint];
    }
    std::vector<Influence> result;
    int rest = WHOLE;
    for (const std::size_t joint : order)
    {
        const int weight = static_cast<int>(WHOLE * weights[joint] / sum);
        result.push_back({static_cast<int>(joint), weight});
        rest -= weight;
    }
    result.front().weight += rest;
    return result;
}

/// Where a joint's surroundings go when the figure's measures change: stretched along
/// the bone and across it, then turned about the Z axis.
struct Stretch
{
    Vec3 from;
    Vec3 to;
    Vec3 along; ///< unit vector
    double lengthwise;
    double across;
    double c; ///< cosine and sine of the turn
    double s;

    Vec3 operator()(const Vec3& p) const
    {
        const Vec3 offset = p - from;
        const double t = dot(offset, along);
        const Vec3 l = along * (t * lengthwise) + (offset - along * t) * across;
        return to + Vec3{c * l.x - s * l.y, s * l.x + c * l.y, l.z};
    }
};

std::vector<Stretch> makeStretches(const std::vector<Limb>& limbs, const std::vector<Joint>& own,
                                   const std::vector<Limb>& otherLimbs,
                                   const std::vector<Joint>& other)
{
    std::vector<Stretch> result;
    for (std::size_t i = 0; i < own.size(); ++i)
    {
        // The first limb that a joint carries stands for its bone.
        const auto limb = std::find_if(limbs.begin(), limbs.end(),
                                       [&](const Limb& candidate)
                                       { return candidate.joint == static_cast<int>(i); });
        const Limb& target = otherLimbs[static_cast<std::size_t>(limb - limbs.begin())];
        const Vec3 bone = limb->to - limb->from;
        const double lengthwise = length(target.to - target.from) / length(bone);
        const double across = target.fromRadius / limb->fromRadius;
        const double turn = other[i].turn - own[i].turn;
        result.push_back({own[i].position, other[i].position, normalized(bone), lengthwise, across,
                          cosine(turn), sine(turn)});
    }
    return result;
}

/// `first` with the measures of another figure.
Body reshaped(const Body& first, const std::vector<Limb>& limbs, const Proportions& p)
{
    Body body = first;
    body.skeleton = makeSkeleton(p);
    const std::vector<Limb> targetLimbs = makeLimbs(p, body.skeleton);
    const std::vector<Stretch> stretches =
        makeStretches(limbs, first.skeleton, targetLimbs, body.skeleton);
    for (std::size_t i = 0; i < body.surface.points.size(); ++i)
    {
        Vec3 sum;
        for (const Influence& influence : first.influences[i])
        {
            const Stretch& stretch = stretches[static_cast<std::size_t>(influence.joint)];
            sum = sum + stretch(first.surface.points[i]) *
                            (static_cast<double>(influence.weight) / WHOLE);
        }
        body.surface.points[i] = sum;
    }
    relax(body.surface, BodyField(targetLimbs), 5);
    body.normals = pointNormals(body.surface);
    return body;
}

Garment garmentOf(const std::string& joint, const Vec3& p, const Vec3& head, double skull)
{
    if (joint == "head")
    {
        const Vec3 offset = (p - head) * (1.0 / skull);
        return offset.y > 0.32 + 0.9 * (offset.z + 0.05) ? Garment::HAIR : Garment::SKIN;
    }
    const std::string part = joint.find('_') == 1 ? joint.substr(2) : joint;
    if (part == "neck" || part == "wrist" || part == "fingers" || part == "elbow")
    {
        return Garment::SKIN;
    }
    if (part == "ankle" || part == "toes")
    {
        return Garment::SHOES;
    }
    return part == "hip" || part == "knee" || part == "sacrum" ? Garment::TROUSERS : Garment::SHIRT;
}

std::vector<Garment> dress(const Body& body, const BodyField& field, double skull)
{
    std::vector<Garment> garments;
    const Vec3 head = body.skeleton[4].position;
    for (const Corners& triangle : body.surface.triangles)
    {
        Vec3 sum;
        for (const int corner : triangle)
        {
            sum = sum + body.surface.points[static_cast<std::size_t>(corner)];
        }
        const Vec3 middle = sum * (1.0 / 3.0);
        const Joint& joint = body.skeleton[static_cast<std::size_t>(field.jointAt(middle))];
        garments.push_back(garmentOf(joint.name, middle, head, skull));
    }
    return garments;
}
} // namespace

std::vector<Body> makeBodies(double detail)
{
    // Stretched arms run along the grid, where thin parts lose the least.
    Proportions p = proportions().front();
    p.armAngle = 0.0;
    Body first;
    first.skeleton = makeSkeleton(p);
    const std::vector<Limb> limbs = makeLimbs(p, first.skeleton);
    const BodyField field(limbs);
    first.surface = makeFirstSurface(p, first.skeleton, field, 0.0305 / detail);
    // As far as the blending reaches, not as many edges.
    const int rounds = std::max(1, static_cast<int>(9.0 * detail * detail));
    for (const Weights& weights :
         spreadWeights(first.surface, field, first.skeleton.size(), rounds))
    {
        first.influences.push_back(strongest(weights));
    }
    first.garments = dress(first, field, p.skull);

    std::vector<Body> bodies;
    for (const Proportions& figure : proportions())
    {
        bodies.push_back(reshaped(first, limbs, figure));
    }
    return bodies;
}
} // namespace velmoran::generator
