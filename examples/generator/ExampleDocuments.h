#pragma once

#include <string>
#include <vector>

namespace velmoran::generator
{
/// A document and the name of its file.
struct ExampleDocument
{
    std::string fileName;
    std::string text;
};

/// All example documents. `detail` scales the density of points and faces: 1 is what
/// stands in examples/data, 2 has about four times as many.
std::vector<ExampleDocument> makeExampleDocuments(double detail);
} // namespace velmoran::generator
