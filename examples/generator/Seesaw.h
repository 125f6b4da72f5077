#pragma once

#include <string>

namespace velmoran::generator
{
/// The text of a document with a seesaw, a block and a ball on it, and their physics.
std::string makeSeesawDocument(double detail);
} // namespace velmoran::generator
