#include "scene/geometry/Stream.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace velmoran::scene
{
Stream::Stream(std::string id, int stride, bool allowDuplicates)
    : m_id(std::move(id)),
      m_stride(stride),
      m_count(0),
      m_allowDuplicates(allowDuplicates),
      m_slotBits(0),
      m_indexedTuples(0)
{
}

Stream::~Stream() = default;

Stream::Stream(const Stream& other) = default;

Stream& Stream::operator=(const Stream& other) = default;

StreamPtr Stream::clone() const
{
    const StreamPtr copy = boost::make_shared<Stream>(m_id, m_stride, m_allowDuplicates);
    copy->m_count = m_count;
    copy->m_data = m_data;
    return copy;
}

const std::string& Stream::getID() const
{
    return m_id;
}

void Stream::setID(const std::string& id)
{
    m_id = id;
}

int Stream::getStride() const
{
    return m_stride;
}

void Stream::setStride(int stride)
{
    m_stride = stride;
    dropIndex();
    m_revision.moveOn();
}

int Stream::getCount() const
{
    return m_count;
}

void Stream::setCount(int count)
{
    m_count = count;
    m_revision.moveOn();
}

bool Stream::getAllowDuplicates() const
{
    return m_allowDuplicates;
}

void Stream::setAllowDuplicates(bool allowDuplicates)
{
    m_allowDuplicates = allowDuplicates;
    m_revision.moveOn();
}

const std::vector<float>& Stream::getData() const
{
    return m_data;
}

void Stream::setData(std::vector<float> data)
{
    m_data = std::move(data);
    dropIndex();
    m_revision.moveOn();
}

std::vector<float>& Stream::mutableData()
{
    dropIndex();
    m_revision.moveOn();
    return m_data;
}

const std::vector<Stream::Param>& Stream::getParamList() const
{
    return m_paramList;
}

void Stream::addParam(const std::string& name, const std::string& type)
{
    m_paramList.emplace_back(name, type);
    m_revision.moveOn();
}

const std::vector<std::string>& Stream::getNameList() const
{
    return m_nameList;
}

void Stream::addName(const std::string& name)
{
    m_nameList.push_back(name);
    m_revision.moveOn();
}

void Stream::setNameList(std::vector<std::string> names)
{
    m_nameList = std::move(names);
    m_revision.moveOn();
}

std::vector<std::string>& Stream::mutableNameList()
{
    m_revision.moveOn();
    return m_nameList;
}

const core::utils::Revision& Stream::getRevision() const
{
    return m_revision;
}
} // namespace velmoran::scene
