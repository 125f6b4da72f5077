#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <vector>

namespace velmoran::scene
{
/// A blend of whole shapes, of which the scene keeps the geometry only.
///
/// Ownership: shares the geometry; held by controllers.
/// Threads: not locked; callers serialise access.
class VELMORAN_SCENE_EXPORT Morph
{
public:
    /// A morph of `sourceGeometry`, which may be empty.
    explicit Morph(const IGeometryPtr& sourceGeometry);

    virtual ~Morph();

    /// The geometry that is deformed; empty when none was given.
    IGeometryPtr getSourceGeometry() const;
    void setSourceGeometry(const IGeometryPtr& sourceGeometry);

    /// Accepted from a reader of documents and not kept: nothing blends shapes by
    /// these arrays.
    void setStreams(const std::vector<Stream>& streams);

private:
    IGeometryPtr m_sourceGeometry;
};
} // namespace velmoran::scene
