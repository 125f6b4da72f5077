#include "scene/graph/TransformationMatrix.h"

#include <boost/make_shared.hpp>

namespace velmoran::scene
{
using core::utils::Matrix;

TransformationMatrix::TransformationMatrix() : m_matrix(true) {}

TransformationMatrix::TransformationMatrix(const float* sixteen) : m_matrix(sixteen) {}

TransformationMatrix::TransformationMatrix(const Matrix& matrix) : m_matrix(matrix) {}

int TransformationMatrix::getType() const
{
    return MATRIX;
}

ITransformationPtr TransformationMatrix::clone() const
{
    return boost::make_shared<TransformationMatrix>(*this);
}

const Matrix& TransformationMatrix::getMatrix() const
{
    return m_matrix;
}

void TransformationMatrix::setMatrix(const Matrix& matrix)
{
    m_matrix = matrix;
    markUpdated();
}

void TransformationMatrix::setMatrix(const float* sixteen)
{
    setMatrix(Matrix(sixteen));
}

float TransformationMatrix::getValue(unsigned int i, unsigned int j) const
{
    return i > 3 || j > 3 ? 0.0F : m_matrix[static_cast<int>(4 * i + j)];
}
} // namespace velmoran::scene
