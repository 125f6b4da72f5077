#pragma once

#include "examples/generator/Shapes.h"
#include "examples/generator/Vec3.h"

#include <pugixml.hpp>

#include <string>
#include <vector>

namespace velmoran::generator
{
/// `value` with up to `decimals` digits behind the point, without zeros at the end;
/// the same text in every locale.
std::string numberText(double value, int decimals = 5);

/// A list of numbers as an element's text: `perLine` of them on each line.
class NumberList
{
public:
    explicit NumberList(std::size_t perLine) : m_perLine(perLine) {}

    void add(const std::string& text);
    void add(double value, int decimals = 5) { add(numberText(value, decimals)); }
    void add(int value) { add(std::to_string(value)); }

    const std::string& text() const { return m_text; }
    std::size_t count() const { return m_count; }

private:
    std::size_t m_perLine;
    std::size_t m_count = 0;
    std::string m_text;
};

/// A COLLADA 1.4.1 document in the making: Y up, metres.
///
/// Libraries are made when their first element is added.
class Document
{
public:
    explicit Document(const std::string& title);

    /// A new element of the library, e.g. "geometries" and "geometry".
    pugi::xml_node add(const std::string& library, const std::string& element,
                       const std::string& id, const std::string& name = "");

    void addImage(const std::string& id, const std::string& file);

    /// An effect of one diffuse colour and a material that uses it.
    void addMaterial(const std::string& id, const std::string& effectID, const Vec3& colour);

    /// An effect that shows an image, and a material that uses it.
    void addTexturedMaterial(const std::string& id, const std::string& effectID,
                             const std::string& imageID);

    /// A shape as a `polylist`, with the material symbol "surface".
    void addShape(const std::string& id, const std::string& name, const Shape& shape);

    /// The scene's top level; nodes go below it.
    pugi::xml_node setScene(const std::string& id, const std::string& name);

    /// The physics scene that acts in the scene, which is set before.
    void setPhysics(const std::string& id);

    std::string text() const;

private:
    pugi::xml_node addEffect(const std::string& id);
    void addMaterialOf(const std::string& id, const std::string& effectID);

    pugi::xml_document m_document;
    pugi::xml_node m_root;
};

/// A `source` of floats with the parameters named, e.g. {"X", "Y", "Z"}.
void addFloatSource(pugi::xml_node parent, const std::string& id, const NumberList& values,
                    const std::vector<std::string>& parameters);

/// A `source` of matrices, `values` row by row.
void addMatrixSource(pugi::xml_node parent, const std::string& id, const NumberList& values);

/// An `input` without offset, or with one.
void addInput(pugi::xml_node parent, const std::string& semantic, const std::string& sourceID,
              int offset = -1);

/// An element with text, e.g. <scale sid="scale">1 1 1</scale>; no SID when empty.
pugi::xml_node addText(pugi::xml_node parent, const std::string& element, const std::string& text,
                       const std::string& sid = "");

/// A `node` with a translation; type "NODE" or "JOINT".
pugi::xml_node addNode(pugi::xml_node parent, const std::string& id, const std::string& name,
                       const Vec3& translation, const std::string& type = "NODE");

/// A node with the usual list of transformations: translate, rotate about z, y and x in
/// degrees, scale.
pugi::xml_node addObject(pugi::xml_node parent, const std::string& id, const Vec3& place,
                         const Vec3& turn = {}, const Vec3& size = {1.0, 1.0, 1.0});

/// An `instance_` of this kind.
void addInstance(pugi::xml_node node, const std::string& kind, const std::string& id);

/// An instance of a geometry of `addShape`, of one material.
void addGeometryInstance(pugi::xml_node node, const std::string& geometryID,
                         const std::string& materialID);

/// An instance of a geometry or controller, its material symbols bound to materials.
struct Binding
{
    std::string symbol;
    std::string materialID;
};
void bindMaterials(pugi::xml_node instance, const std::vector<Binding>& bindings);
} // namespace velmoran::generator
