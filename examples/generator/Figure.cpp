#include "examples/generator/Figure.h"

#include <algorithm>

namespace velmoran::generator
{
namespace
{
/// Adds joints in the order parent, child.
class SkeletonBuilder
{
public:
    void add(const std::string& name, const std::string& parent, const Vec3& localPosition,
             double localTurn = 0.0)
    {
        Joint joint{name, indexOf(parent), localPosition, localTurn, localPosition, localTurn};
        if (joint.parent >= 0)
        {
            const Joint& above = m_joints[static_cast<std::size_t>(joint.parent)];
            const double c = cosine(above.turn);
            const double s = sine(above.turn);
            const Vec3& l = localPosition;
            joint.position = above.position + Vec3{c * l.x - s * l.y, s * l.x + c * l.y, l.z};
            joint.turn = above.turn + localTurn;
        }
        m_joints.push_back(joint);
    }

    int indexOf(const std::string& name) const
    {
        const auto found = std::find_if(m_joints.begin(), m_joints.end(),
                                        [&](const Joint& joint) { return joint.name == name; });
        return found == m_joints.end() ? -1 : static_cast<int>(found - m_joints.begin());
    }

    std::vector<Joint> take() { return std::move(m_joints); }

private:
    std::vector<Joint> m_joints;
};

/// `side` is 1 for the left and -1 for the right.
void addArm(SkeletonBuilder& joints, const Proportions& p, const std::string& prefix, double side)
{
    const double inner = 0.15 * p.shoulderWidth;
    joints.add(prefix + "clavicle", "thorax", {side * inner, p.neckRise - p.shoulderDrop, 0.015});
    joints.add(prefix + "shoulder", prefix + "clavicle",
               {side * (p.shoulderWidth - inner), 0.0, -0.02}, -side * p.armAngle);
    joints.add(prefix + "elbow", prefix + "shoulder", {side * p.upperArm, 0.0, 0.0});
    joints.add(prefix + "wrist", prefix + "elbow", {side * p.forearm, 0.0, 0.02});
    joints.add(prefix + "fingers", prefix + "wrist", {side * p.hand, 0.0, 0.01});
}

void addLeg(SkeletonBuilder& joints, const Proportions& p, const std::string& prefix, double side)
{
    joints.add(prefix + "hip", "sacrum", {side * p.hipWidth, -p.hipDrop, 0.0});
    joints.add(prefix + "knee", prefix + "hip", {side * 0.025, -p.thigh, 0.01});
    joints.add(prefix + "ankle", prefix + "knee", {side * 0.015, -p.calf, -0.02});
    joints.add(prefix + "toes", prefix + "ankle", {side * 0.02, 0.035 - p.ankleHeight, p.foot});
}

/// Looks up joints by name and adds limbs to them.
class LimbBuilder
{
public:
    explicit LimbBuilder(const std::vector<Joint>& skeleton) : m_skeleton(skeleton) {}

    Vec3 at(const std::string& joint) const { return m_skeleton[index(joint)].position; }

    void add(const std::string& joint, const Vec3& from, const Vec3& to, double fromRadius,
             double toRadius, double depth = 1.0)
    {
        m_limbs.push_back({static_cast<int>(index(joint)), from, to, fromRadius, toRadius, depth});
    }

    std::vector<Limb> take() { return std::move(m_limbs); }

private:
    std::size_t index(const std::string& name) const
    {
        const auto found = std::find_if(m_skeleton.begin(), m_skeleton.end(),
                                        [&](const Joint& joint) { return joint.name == name; });
        return static_cast<std::size_t>(found - m_skeleton.begin());
    }

    const std::vector<Joint>& m_skeleton;
    std::vector<Limb> m_limbs;
};

/// A limb that spans the body from side to side.
void addAcross(LimbBuilder& limbs, const std::string& joint, const Vec3& middle, double half,
               double radius, double depth)
{
    const Vec3 aside{half, 0.0, 0.0};
    limbs.add(joint, middle - aside, middle + aside, radius, radius, depth);
}

void addTorso(LimbBuilder& limbs, const Proportions& p)
{
    const double g = p.torsoGirth;
    const Vec3 sacrum = limbs.at("sacrum");
    const Vec3 lumbar = limbs.at("lumbar");
    const Vec3 thorax = limbs.at("thorax");
    const double shoulderY = limbs.at("l_shoulder").y;
    const Vec3 chest = {0.0, thorax.y + 0.45 * (shoulderY - thorax.y), thorax.z + 0.01};
    addAcross(limbs, "sacrum", sacrum + Vec3{0.0, -0.02, -0.015}, 0.75 * p.hipWidth, 0.11 * g,
              0.95);
    addAcross(limbs, "lumbar", between(sacrum, lumbar, 0.8), 0.045 * g, 0.105 * g, 0.82);
    addAcross(limbs, "lumbar", between(lumbar, thorax, 0.5), 0.05 * g, 0.1 * g, 0.82);
    addAcross(limbs, "thorax", thorax, 0.065 * g, 0.108 * g, 0.85);
    addAcross(limbs, "thorax", chest, 0.36 * p.shoulderWidth + 0.015, 0.115 * g, 0.88);
    addAcross(limbs, "thorax", {0.0, shoulderY - 0.02, thorax.z}, 0.45 * p.shoulderWidth, 0.07 * g,
              0.95);
}

void addHead(LimbBuilder& limbs, const Proportions& p)
{
    const Vec3 neck = limbs.at("neck");
    const Vec3 head = limbs.at("head");
    const double size = p.skull / 0.205;
    const Vec3 crown = head + Vec3{0.0, p.skull, 0.0};
    limbs.add("neck", neck + Vec3{0.0, -0.03, -0.005}, head + Vec3{0.0, 0.02, 0.0}, 0.062, 0.056);
    // Skull, face down to the chin, nose.
    limbs.add("head", crown + Vec3{0.0, -0.092 * size, -0.012},
              crown + Vec3{0.0, -0.09 * size, 0.018}, 0.09 * size, 0.086 * size);
    limbs.add("head", head + Vec3{0.0, 0.018, 0.06}, crown + Vec3{0.0, -0.1 * size, 0.035},
              0.043 * size, 0.07 * size);
    limbs.add("head", head + Vec3{0.0, 0.068 * size, 0.108}, head + Vec3{0.0, 0.11 * size, 0.098},
              0.015 * size, 0.011 * size);
}

void addArm(LimbBuilder& limbs, const Proportions& p, const std::string& prefix)
{
    const double g = p.limbGirth;
    const Vec3 shoulder = limbs.at(prefix + "shoulder");
    const Vec3 elbow = limbs.at(prefix + "elbow");
    const Vec3 wrist = limbs.at(prefix + "wrist");
    const Vec3 knuckles = limbs.at(prefix + "fingers");
    const Vec3 along = normalized(knuckles - wrist);
    const Vec3 tip = knuckles + along * (0.9 * p.hand);
    limbs.add(prefix + "clavicle", limbs.at(prefix + "clavicle") + Vec3{0.0, -0.01, -0.01},
              shoulder + Vec3{0.0, -0.005, 0.0}, 0.06, 0.058 * g);
    limbs.add(prefix + "shoulder", shoulder, elbow, 0.056 * g, 0.041 * g);
    limbs.add(prefix + "elbow", elbow, between(elbow, wrist, 0.35), 0.041 * g, 0.044 * g);
    limbs.add(prefix + "elbow", between(elbow, wrist, 0.35), wrist, 0.044 * g, 0.029 * g);
    // The palm faces the body: broad from front to back.
    limbs.add(prefix + "wrist", wrist, knuckles, 0.028, 0.027, 1.55);
    limbs.add(prefix + "fingers", knuckles, tip, 0.026, 0.018, 1.7);
    const Vec3 thumb = wrist + along * (0.25 * p.hand) + Vec3{0.0, 0.0, 0.022};
    limbs.add(prefix + "wrist", thumb, thumb + along * (0.55 * p.hand) + Vec3{0.0, 0.0, 0.032},
              0.024, 0.02);
}

void addLeg(LimbBuilder& limbs, const Proportions& p, const std::string& prefix)
{
    const double g = p.limbGirth;
    const Vec3 hip = limbs.at(prefix + "hip");
    const Vec3 knee = limbs.at(prefix + "knee");
    const Vec3 ankle = limbs.at(prefix + "ankle");
    const Vec3 ball = limbs.at(prefix + "toes");
    const Vec3 heel{ankle.x, 0.045, ankle.z - 0.035};
    const Vec3 forward{0.15 * (ball.x - ankle.x), 0.0, 0.055};
    limbs.add("sacrum", hip + Vec3{0.0, 0.01, -0.035}, hip + Vec3{0.0, -0.03, -0.04}, 0.085 * g,
              0.085 * g);
    limbs.add(prefix + "hip", hip + Vec3{0.0, -0.02, 0.0}, knee, 0.092 * g, 0.057 * g);
    limbs.add(prefix + "knee", knee, between(knee, ankle, 0.3) + Vec3{0.0, 0.0, -0.012}, 0.056 * g,
              0.058 * g);
    limbs.add(prefix + "knee", between(knee, ankle, 0.3) + Vec3{0.0, 0.0, -0.012}, ankle, 0.058 * g,
              0.037 * g);
    limbs.add(prefix + "ankle", ankle, heel, 0.036, 0.036);
    limbs.add(prefix + "ankle", ankle + Vec3{0.0, -0.015, 0.01}, ball + Vec3{0.0, 0.01, 0.0}, 0.038,
              0.036);
    limbs.add(prefix + "ankle", heel, ball + Vec3{0.0, 0.01, 0.0}, 0.036, 0.038);
    limbs.add(prefix + "toes", ball + Vec3{0.0, 0.005, 0.0}, ball + forward, 0.037, 0.024);
}
} // namespace

const std::vector<Proportions>& proportions()
{
    static const std::vector<Proportions> table = []
    {
        Proportions average;
        average.name = "average";
        average.ankleHeight = 0.08;
        average.calf = 0.4;
        average.thigh = 0.42;
        average.hipDrop = 0.06;
        average.hipWidth = 0.09;
        average.lumbarRise = 0.11;
        average.thoraxRise = 0.15;
        average.neckRise = 0.25;
        average.headRise = 0.09;
        average.skull = 0.205;
        average.shoulderDrop = 0.055;
        average.shoulderWidth = 0.185;
        average.upperArm = 0.28;
        average.forearm = 0.25;
        average.hand = 0.09;
        average.armAngle = 48.0;
        average.foot = 0.13;
        average.limbGirth = 1.0;
        average.torsoGirth = 1.0;

        Proportions tall = average;
        tall.name = "tall";
        tall.calf = 0.47;
        tall.thigh = 0.5;
        tall.thoraxRise = 0.17;
        tall.neckRise = 0.28;
        tall.headRise = 0.1;
        tall.shoulderWidth = 0.225;
        tall.upperArm = 0.32;
        tall.forearm = 0.28;
        tall.hand = 0.1;
        tall.foot = 0.15;
        tall.limbGirth = 1.05;
        tall.torsoGirth = 1.08;
        return std::vector<Proportions>{average, tall};
    }();
    return table;
}

std::vector<Joint> makeSkeleton(const Proportions& p)
{
    SkeletonBuilder joints;
    joints.add("sacrum", "", {0.0, p.ankleHeight + p.calf + p.thigh + p.hipDrop, 0.0});
    joints.add("lumbar", "sacrum", {0.0, p.lumbarRise, 0.005});
    joints.add("thorax", "lumbar", {0.0, p.thoraxRise, -0.01});
    joints.add("neck", "thorax", {0.0, p.neckRise, -0.015});
    joints.add("head", "neck", {0.0, p.headRise, 0.015});
    addArm(joints, p, "l_", 1.0);
    addArm(joints, p, "r_", -1.0);
    addLeg(joints, p, "l_", 1.0);
    addLeg(joints, p, "r_", -1.0);
    return joints.take();
}

std::vector<Limb> makeLimbs(const Proportions& p, const std::vector<Joint>& skeleton)
{
    LimbBuilder limbs(skeleton);
    addTorso(limbs, p);
    addHead(limbs, p);
    for (const char* prefix : {"l_", "r_"})
    {
        addArm(limbs, p, prefix);
        addLeg(limbs, p, prefix);
    }
    return limbs.take();
}
} // namespace velmoran::generator
