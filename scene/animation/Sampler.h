#pragma once

#include "core/utils/Revision.h"
#include "scene/Export.h"
#include "scene/Forward.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velmoran::scene
{
/// Gives streams their roles in an animation: key times, key values and so on.
///
/// Ownership: shares its streams with the animation that lists them.
/// Threads: not locked; callers serialise access.
class VELMORAN_SCENE_EXPORT Sampler
{
public:
    /// The role of an input; each is named after its text in documents.
    enum Semantic : std::int32_t
    {
        INPUT = 0,         ///< key times in seconds
        OUTPUT = 1,        ///< key values
        IN_TANGENT = 2,    ///< control points before the keys
        OUT_TANGENT = 3,   ///< control points after the keys
        INTERPOLATION = 4, ///< an interpolation name for each key
        UNKNOWN = 5        ///< any other text; never found by look-up
    };

    /// A sampler without inputs.
    explicit Sampler(std::string id);

    virtual ~Sampler();

    /// Not unique: samplers that key the same node may share an ID.
    const std::string& getId() const;

    /// Appends an input. A name that is no `Semantic`'s text (case counts) gives an
    /// input that only `getInputsSemantics` shows. An empty handle is ignored.
    void addInput(const std::string& semanticName, const StreamPtr& stream);

    /// The roles of the inputs in the order of adding.
    const std::vector<Semantic>& getInputsSemantics() const;

    /// The stream of the first input with this role; empty when there is none.
    StreamPtr getStreamBySemantic(Semantic semantic) const;

    /// Moves on with every input that is added; the streams have their own.
    const core::utils::Revision& getRevision() const;

private:
    std::string m_id;
    std::vector<Semantic> m_semantics; ///< one for each input
    std::vector<StreamPtr> m_inputs;   ///< parallel to m_semantics, none empty
    core::utils::Revision m_revision;
};
} // namespace velmoran::scene
