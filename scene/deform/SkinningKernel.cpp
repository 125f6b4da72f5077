#include "scene/deform/SkinningKernel.h"

#include <algorithm>

namespace velmoran::scene
{
namespace
{
using Column = Eigen::Array4f;

/// The first `Read` floats of a tuple as a point, each of them four times.
template <int Read>
class Point
{
public:
    explicit Point(const float* tuple)
        : m_x(Column::Constant(tuple[0])),
          m_y(Column::Constant(Read > 1 ? tuple[1] : 0.0F)),
          m_z(Column::Constant(Read > 2 ? tuple[2] : 0.0F)),
          m_w(Column::Constant(Read > 3 ? tuple[3] : 1.0F))
    {
    }

    Column transformedBy(const PoseMatrix& matrix) const
    {
        Column result = m_x * matrix.columns[0];
        if constexpr (Read > 1)
        {
            result += m_y * matrix.columns[1];
        }
        if constexpr (Read > 2)
        {
            result += m_z * matrix.columns[2];
        }
        if constexpr (Read > 3)
        {
            return result + m_w * matrix.columns[3];
        }
        return result + matrix.columns[3];
    }

private:
    Column m_x;
    Column m_y;
    Column m_z;
    Column m_w;
};

/// `Read`: how many floats of a tuple are posed. Writes four floats for each tuple; those
/// that belong to the next ones are overwritten in their turn.
template <int Read>
void skinTuples(const SkinArrays skin, std::size_t count, float* posed)
{
    const int* influence = skin.v.data;
    std::size_t left = skin.v.size / 2; // influences not read yet: no count leads past them
    const float* tuple = skin.vertices.data;
    for (std::size_t i = 0; i < count; ++i)
    {
        const Point<Read> point(tuple);
        const std::size_t wanted = i < skin.vcount.size ? skin.vcount.data[i] : 0;
        const std::size_t here = std::min(wanted, left);
        left -= here;
        Column sum = Column::Zero();
        for (const int* const end = influence + 2 * here; influence != end; influence += 2)
        {
            // Negative indices become large ones.
            const auto joint = static_cast<std::size_t>(influence[0]);
            const auto weight = static_cast<std::size_t>(influence[1]);
            if (joint < skin.palette.size && weight < skin.weights.size)
            {
                sum += skin.weights.data[weight] * point.transformedBy(skin.palette.data[joint]);
            }
        }
        Eigen::Map<Column>{posed} = sum;
        if constexpr (Read == 4)
        {
            std::copy(tuple + 4, tuple + skin.stride, posed + 4);
        }
        tuple += skin.stride;
        posed += skin.stride;
    }
}
} // namespace

PoseMatrix::PoseMatrix() : PoseMatrix(Eigen::Matrix4f(Eigen::Matrix4f::Zero())) {}

PoseMatrix::PoseMatrix(const Eigen::Matrix4f& matrix)
    : columns{matrix.col(0), matrix.col(1), matrix.col(2), matrix.col(3)}
{
}

std::vector<float> skinVertices(const SkinArrays& skin)
{
    const std::size_t count = skin.stride == 0 ? 0 : skin.vertices.size / skin.stride;
    std::vector<float> posed(count * skin.stride + 4); // the last tuple is written four wide, too
    switch (std::min<std::size_t>(skin.stride, 4))
    {
    case 1:
        skinTuples<1>(skin, count, posed.data());
        break;
    case 2:
        skinTuples<2>(skin, count, posed.data());
        break;
    case 3:
        skinTuples<3>(skin, count, posed.data());
        break;
    default:
        skinTuples<4>(skin, count, posed.data());
        break;
    }
    posed.resize(count * skin.stride);
    return posed;
}
} // namespace velmoran::scene
