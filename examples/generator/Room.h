#pragma once

#include <string>

namespace velmoran::generator
{
/// The text of a document with a room: floor, walls, table, chair, lamp and ball, a
/// camera and a light.
std::string makeRoomDocument(double detail);
} // namespace velmoran::generator
