#include "scene/geometry/DistinctValues.h"

#include "scene/geometry/Stream.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace velmoran::scene
{
DistinctValues::DistinctValues(const std::string& id, std::size_t width, std::vector<float> values)
    : stream(boost::make_shared<Stream>(id, static_cast<int>(width), false))
{
    const std::size_t size = values.size();
    Stream sorted(id, static_cast<int>(width), false);
    tuples = sorted.insertValues(std::move(values));
    stream->setCount(sorted.getCount());
    stream->setData(std::move(sorted.mutableData()));
    if (stream->getData().size() == size)
    {
        tuples = std::vector<int>();
    }
}
} // namespace velmoran::scene
