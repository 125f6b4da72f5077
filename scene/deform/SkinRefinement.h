#pragma once

#include "scene/Forward.h"

#include <vector>

namespace velmoran::scene
{
/// Where a vertex of a refined mesh comes from: vertex `a` of the mesh before, or the middle
/// between `a` and `b`. -1 stands for a vertex that the mesh did not have.
struct VertexOrigin
{
    int a;
    int b;
    bool isHalfway;
};

/// Carries the influences of a skin over to the refinement of its mesh, in two steps, so that
/// nothing has changed when the first one fails.
class SkinRefinement
{
public:
    /// Nothing is carried over when there is no controller, it has no skin, or the skin's
    /// source geometry is another one than `mesh`. A skin without source geometry is taken
    /// for that of `mesh`.
    SkinRefinement(const ControllerPtr& controller, const Mesh& mesh);

    bool isNeeded() const;

    /// Computes the lists for these vertices: the influences of `a`, or by the rule of
    /// `Skin::calculateNewJointsAndWeights`. Linear in vertices and influences.
    void compute(const std::vector<VertexOrigin>& vertices);

    /// Gives the lists to the skin, and a new stream "VMR_SUBDIVIDE_WEIGHT_STREAM" in the place
    /// of its weights.
    void apply();

private:
    SkinPtr m_skin; ///< empty when nothing is needed
    StreamPtr m_weights;
    std::vector<unsigned int> m_vcount;
    std::vector<int> m_v;
};
} // namespace velmoran::scene
