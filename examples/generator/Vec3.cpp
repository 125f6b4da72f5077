#include "examples/generator/Vec3.h"

#include <cmath>

namespace velmoran::generator
{
Vec3 operator+(const Vec3& a, const Vec3& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

Vec3 operator-(const Vec3& a, const Vec3& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

Vec3 operator*(const Vec3& v, double factor)
{
    return {v.x * factor, v.y * factor, v.z * factor};
}

double dot(const Vec3& a, const Vec3& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Vec3 cross(const Vec3& a, const Vec3& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double length(const Vec3& v)
{
    return std::sqrt(dot(v, v));
}

Vec3 normalized(const Vec3& v)
{
    const double size = length(v);
    return size > 0.0 ? v * (1.0 / size) : Vec3{0.0, 1.0, 0.0};
}

Vec3 between(const Vec3& a, const Vec3& b, double t)
{
    return a + (b - a) * t;
}

double sine(double degrees)
{
    const double x = degrees * (3.14159265358979323846 / 180.0);
    double term = x;
    double sum = x;
    // The standard library's sine may differ in its last bit between machines. This
    // many terms of the power series suffice for one full turn.
    for (int n = 1; n < 24; ++n)
    {
        term *= -x * x / (2.0 * n * (2.0 * n + 1.0));
        sum += term;
    }
    return sum;
}

double cosine(double degrees)
{
    return sine(degrees < 0.0 ? degrees + 90.0 : 90.0 - degrees);
}
} // namespace velmoran::generator
