#pragma once

#include "examples/generator/Vec3.h"

#include <string>
#include <vector>

namespace velmoran::generator
{
/// The measures of a figure. Lengths in metres; girths are factors of an average
/// person's. Change a number or add a row to `proportions()` for another figure.
struct Proportions
{
    std::string name;

    double ankleHeight;
    double calf;
    double thigh;
    double hipDrop;  ///< hip joints below the sacrum
    double hipWidth; ///< half the distance of the hip joints

    double lumbarRise; ///< sacrum to lumbar joint
    double thoraxRise;
    double neckRise;
    double headRise;
    double skull; ///< head joint to crown

    double shoulderDrop;  ///< shoulder joints below the neck joint
    double shoulderWidth; ///< half the distance of the shoulder joints
    double upperArm;
    double forearm;
    double hand;     ///< wrist to knuckles, and again to the finger tips
    double armAngle; ///< degrees below the horizontal

    double foot; ///< heel to ball, in front of the ankle

    double limbGirth;
    double torsoGirth;
};

/// The average figure first, then the others.
const std::vector<Proportions>& proportions();

/// A joint of the skeleton at rest. The world orientation is a turn about +Z.
struct Joint
{
    std::string name;
    int parent;         ///< index of a joint before this one, -1 for the root
    Vec3 position;      ///< world space
    double turn;        ///< degrees, world space
    Vec3 localPosition; ///< in the parent's frame; the root's own position
    double localTurn;   ///< degrees, in the parent's frame
};

/// The skeleton: "sacrum" first, parents before children, the same joints in the same
/// order for all proportions. Arms stretch along the X axes of their joints, so that
/// turning the shoulders to 0 degrees gives the figure a T pose.
std::vector<Joint> makeSkeleton(const Proportions& p);

/// A part of the body: all points within a radius of a segment, which changes from
/// one end to the other. Depth flattens it along Z.
struct Limb
{
    int joint; ///< index of the joint that carries it
    Vec3 from;
    Vec3 to;
    double fromRadius;
    double toRadius;
    double depth;
};

/// The parts whose smooth union is the body; the same number in the same order for
/// all proportions.
std::vector<Limb> makeLimbs(const Proportions& p, const std::vector<Joint>& skeleton);
} // namespace velmoran::generator
