#pragma once

#include "scene/Forward.h"
#include "scene/geometry/StreamSemantic.h"

#include <cstddef>
#include <limits>
#include <vector>

namespace velmoran::scene
{
/// What many corners have of one semantic: a number for each corner, and the value behind each
/// number.
///
/// Corners are read as `TriangleMeshPrimitive::getTriangleAt` assembles them, straight from the
///     index records. Every tuple that is used has a number of its own, in the order of first
///     use. A corner without the semantic, or whose tuple does not exist, has zeros, which
///     have a number as well.
/// Ownership: reads the streams of the primitives, which must not change meanwhile.
class CornerValues
{
public:
    /// Stands for a corner of a primitive that has no input of the semantic.
    static constexpr unsigned int NO_NUMBER = std::numeric_limits<unsigned int>::max();

    /// Of each tuple the first `width` floats are read; a narrower tuple is filled with zeros.
    CornerValues(StreamSemantic semantic, std::size_t width);

    /// Whether `primitive`, or its mesh's vertices list, has an input of `semantic`.
    static bool hasInput(const TriangleMeshPrimitive& primitive, StreamSemantic semantic);

    /// Appends the corners of the first `triangles` triangles, three each.
    void appendTriangles(const TriangleMeshPrimitive& primitive, std::size_t triangles);

    /// Appends a corner that has tuple `tuple` of `stream`; false when there is none.
    bool appendTuple(const StreamPtr& stream, std::size_t tuple);

    /// Appends `count` corners without number.
    void appendNothing(std::size_t count);

    void reserve(std::size_t corners);

    /// The tuple of each corner, -1 where it has zeros for want of one. Known for corners of one
    /// stream, and until `joinEqualValues`.
    std::vector<int> getTuples() const;

    /// Gives equal values one number: that of the first. 0.0 equals -0.0; a value with a NaN
    /// equals no other one.
    void joinEqualValues();

    /// Number of each corner.
    const std::vector<unsigned int>& getCorners() const { return m_corners; }

    /// Values by number, `width` floats each.
    const std::vector<float>& getValues() const { return m_values; }

    /// How many numbers there are.
    std::size_t countNumbers() const { return m_values.size() / m_width; }

private:
    /// A stream whose tuples have the places [first, first + tuples) in m_numbers.
    struct Source
    {
        const Stream* stream;
        std::size_t first;
        std::size_t tuples;
    };

    struct Input
    {
        std::size_t slot; ///< of an index record
        Source source;
    };

    Source sourceOf(const StreamPtr& stream);
    std::vector<Input> inputsOf(const TriangleMeshPrimitive& primitive);
    static std::size_t findPlace(const std::vector<unsigned int>& indices, std::size_t record,
                                 const std::vector<Input>& inputs);
    unsigned int numberAt(std::size_t place);
    void addValue(std::size_t place);

    StreamSemantic m_semantic;
    std::size_t m_width;
    std::vector<unsigned int> m_corners;
    std::vector<float> m_values;
    std::vector<unsigned int> m_places;  ///< in m_numbers, by number
    std::vector<unsigned int> m_numbers; ///< zeros at place 0, then the tuples of each source
    std::vector<Source> m_sources;
};
} // namespace velmoran::scene
