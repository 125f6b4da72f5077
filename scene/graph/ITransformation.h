#pragma once

#include "core/utils/Revision.h"
#include "core/utils/Vector.h"
#include "scene/Export.h"
#include "scene/Forward.h"

#include <string>

namespace velmoran::scene
{
/// One element of the list of transformations that a node is built from.
///
/// Values are kept as a document states them; `Node::addTransformation` folds them
/// into the node's transform. Animation channels address an element by its SID.
/// Changes raise no event: whoever needs to know asks `updated`.
/// Copies take values and SID along and count as changed.
/// Threads: not locked; callers serialise access.
class VELMORAN_SCENE_EXPORT ITransformation
{
public:
    /// Three floats; what stands behind them does not count.
    using Vector3 = core::utils::Vector<float, 3>;

    /// @name The kinds, as `getType` answers them
    /// @{

    static constexpr int LOOKAT = 0;    ///< TransformationLookAt
    static constexpr int MATRIX = 1;    ///< TransformationMatrix
    static constexpr int ROTATE = 2;    ///< TransformationRotate
    static constexpr int SCALE = 3;     ///< TransformationScale
    static constexpr int SKEW = 4;      ///< TransformationSkew
    static constexpr int TRANSLATE = 5; ///< TransformationTranslate

    /// @}

    /// The kind: `LOOKAT` to `TRANSLATE`.
    virtual int getType() const = 0;

    /// Whether a setter was called since the last call; a new element, copies
    /// included, counts as changed.
    virtual bool updated();

    /// Sets the identifier by which animation channels find this element in its node.
    /// A class that overrides this calls it, so that players notice the change.
    virtual void setSid(std::string sid);

    /// The scoped identifier; empty unless set.
    virtual std::string getSid() const;

    /// A new element of the same class with the same values and SID.
    virtual ITransformationPtr clone() const = 0;

    virtual ~ITransformation();

    /// Moves on when the SID is set.
    const core::utils::Revision& getSidRevision() const;

protected:
    ITransformation();

    /// Takes the SID along, and counts as changed.
    ITransformation(const ITransformation& other);
    ITransformation& operator=(const ITransformation& other);

    /// Makes the next `updated` answer true; every setter calls it.
    void markUpdated();

private:
    std::string m_sid;
    core::utils::Revision m_sidRevision;
    bool m_updated = true;
};
} // namespace velmoran::scene
