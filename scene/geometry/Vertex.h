#pragma once

#include "core/utils/Vector.h"
#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/geometry/StreamSemantic.h"

#include <vector>

namespace velmoran::scene
{
/// One corner of a face with all of its attributes: at most one element for each
/// semantic, in the order in which they were added.
///
/// Texture coordinates: sets 0 to 7 stand under `TEXCOORD` to `TEXCOORD7`; every other
///     set number stands under `INVALID`.
/// Ownership: shares its elements with its copies. A value lives as long as any
///     vertex that lists its element. A setter puts a new element in the place of an
///     old one of its semantic, so copies keep the old one.
/// Events: none; a vertex is no part of a scene.
/// Threads: not locked. Vertices that share elements may be used on several threads as
///     long as nobody writes to the elements' floats.
class VELMORAN_SCENE_EXPORT Vertex
{
public:
    /// A vertex without elements.
    Vertex();
    virtual ~Vertex();

    /// Copies share the elements.
    Vertex(const Vertex& other);
    Vertex& operator=(const Vertex& other);

    /// @name Setters
    /// Each puts a new element in the place of the one of its meaning, or behind the others. It
    /// copies its floats, however many there are, except where it takes an array: there it takes
    /// over `values`, `n` floats from array new, which may be null if `n` is 0.
    /// @{

    void setPosition(float x, float y);
    void setPosition(float x, float y, float z);
    void setPosition(float x, float y, float z, float w);
    void setPosition(const std::vector<float>& values);
    void setPosition(int n, float* values);

    void setColor(float r, float g, float b, float a);
    void setColor(const std::vector<float>& values);

    void setNormal(float x, float y, float z);
    void setNormal(const std::vector<float>& values);

    void setBinormal(float x, float y, float z);
    void setBinormal(const std::vector<float>& values);

    void setTangent(float x, float y, float z);
    void setTangent(const std::vector<float>& values);

    void setTextCoord(int set, float s);
    void setTextCoord(int set, float s, float t);
    void setTextCoord(int set, float s, float t, float p);
    void setTextCoord(int set, float s, float t, float p, float q);
    void setTextCoord(int set, const std::vector<float>& values);
    void setTextCoord(int set, int n, float* values);

    /// @}

    /// @name Getters
    /// An empty handle when the vertex has no such element.
    /// @{

    VertexElementPtr getPosition() const;
    VertexElementPtr getColor() const;
    VertexElementPtr getNormal() const;
    VertexElementPtr getBinormal() const;
    VertexElementPtr getTangent() const;
    VertexElementPtr getTexCoord(int set) const;
    VertexElementPtr getTexCoord(StreamSemantic semantic) const;
    VertexElementPtr getElementBySemantic(StreamSemantic semantic) const;

    /// Element `index` in the order of adding; empty when there is none.
    VertexElementPtr getElementAt(unsigned int index) const;
    unsigned int getElementCount() const;

    /// The first three floats of the position; missing ones are 0.
    core::utils::Vector<float, 3> getPositionVector() const;

    /// @}

    /// @name Elements
    /// @{

    /// Appends `element`. If there is one of its semantic already, that one stays, or
    /// with `replace` the new one takes its place in the list. An empty handle is
    /// ignored.
    void addElement(const VertexElementPtr& element, bool replace);

    /// Makes room for `count` elements, so that adding them costs one allocation.
    void reserve(unsigned int count);

    /// Writes the first three floats of the position to standard output, joined by
    /// ", " and without a line end.
    void print() const;

    /// @}

private:
    const VertexElementPtr* find(StreamSemantic semantic) const;

    std::vector<VertexElementPtr> m_elements;
};
} // namespace velmoran::scene
