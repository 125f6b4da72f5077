#pragma once

namespace velmoran::generator
{
/// A point or direction in metres. Y is up, +Z is the front, +X the figure's left.
///
/// Only the four basic operations and the square root are used in this folder:
/// they give the same bits on every machine, and so the same documents.
struct Vec3
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

Vec3 operator+(const Vec3& a, const Vec3& b);
Vec3 operator-(const Vec3& a, const Vec3& b);
Vec3 operator*(const Vec3& v, double factor);

double dot(const Vec3& a, const Vec3& b);
Vec3 cross(const Vec3& a, const Vec3& b);
double length(const Vec3& v);

/// `v` at length 1; (0, 1, 0) for a zero vector.
Vec3 normalized(const Vec3& v);

/// The point at `t` between `a` (0) and `b` (1).
Vec3 between(const Vec3& a, const Vec3& b, double t);

/// Sine and cosine of an angle between -360 and 360 degrees.
double sine(double degrees);
double cosine(double degrees);
} // namespace velmoran::generator
