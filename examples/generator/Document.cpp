#include "examples/generator/Document.h"

#include <array>
#include <charconv>
#include <sstream>

namespace velmoran::generator
{
namespace
{
const char* const COLLADA_NAMESPACE = "http://www.collada.org/2005/11/COLLADASchema";

std::string vectorText(const Vec3& v)
{
    return numberText(v.x) + " " + numberText(v.y) + " " + numberText(v.z);
}

void setID(pugi::xml_node element, const std::string& id, const std::string& name)
{
    element.append_attribute("id") = id.c_str();
    if (!name.empty())
    {
        element.append_attribute("name") = name.c_str();
    }
}

pugi::xml_node addAccessor(pugi::xml_node source, const std::string& arrayID, std::size_t count,
                           std::size_t stride)
{
    pugi::xml_node accessor = source.append_child("technique_common").append_child("accessor");
    accessor.append_attribute("source") = ("#" + arrayID).c_str();
    accessor.append_attribute("count") = static_cast<unsigned long long>(count);
    accessor.append_attribute("stride") = static_cast<unsigned long long>(stride);
    return accessor;
}

pugi::xml_node addSource(pugi::xml_node parent, const std::string& id, const NumberList& values,
                         std::size_t stride)
{
    pugi::xml_node source = parent.append_child("source");
    setID(source, id, "");
    pugi::xml_node array = addText(source, "float_array", values.text());
    setID(array, id + "-array", "");
    array.append_attribute("count") = static_cast<unsigned long long>(values.count());
    return addAccessor(source, id + "-array", values.count() / stride, stride);
}

NumberList listOf(const std::vector<Vec3>& vectors, bool withZ)
{
    NumberList values(withZ ? 12 : 8);
    for (const Vec3& v : vectors)
    {
        values.add(v.x);
        values.add(v.y);
        if (withZ)
        {
            values.add(v.z);
        }
    }
    return values;
}

void addFaces(pugi::xml_node mesh, const std::string& id, const Shape& shape)
{
    NumberList sizes(32);
    NumberList indices(24);
    for (const ShapeFace& face : shape.faces)
    {
        sizes.add(static_cast<int>(face.size()));
        for (const ShapeCorner& corner : face)
        {
            indices.add(corner.position);
            indices.add(corner.normal);
            indices.add(corner.texture);
        }
    }
    pugi::xml_node polylist = mesh.append_child("polylist");
    polylist.append_attribute("count") = static_cast<unsigned long long>(shape.faces.size());
    polylist.append_attribute("material") = "surface";
    addInput(polylist, "VERTEX", id + "-vertices", 0);
    addInput(polylist, "NORMAL", id + "-normals", 1);
    addInput(polylist, "TEXCOORD", id + "-map", 2);
    addText(polylist, "vcount", sizes.text());
    addText(polylist, "p", indices.text());
}
} // namespace

std::string numberText(double value, int decimals)
{
    std::array<char, 64> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                   std::chars_format::fixed, decimals);
    std::string text(buffer.data(), end.ptr);
    if (text.find('.') != std::string::npos)
    {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.')
        {
            text.pop_back();
        }
    }
    return text == "-0" ? "0" : text;
}

void NumberList::add(const std::string& text)
{
    if (m_count > 0)
    {
        m_text += m_count % m_perLine == 0 ? '\n' : ' ';
    }
    m_text += text;
    ++m_count;
}

Document::Document(const std::string& title)
{
    pugi::xml_node declaration = m_document.append_child(pugi::node_declaration);
    declaration.append_attribute("version") = "1.0";
    declaration.append_attribute("encoding") = "utf-8";
    m_root = m_document.append_child("COLLADA");
    m_root.append_attribute("xmlns") = COLLADA_NAMESPACE;
    m_root.append_attribute("version") = "1.4.1";
    pugi::xml_node asset = m_root.append_child("asset");
    addText(asset.append_child("contributor"), "authoring_tool", "make_example_data");
    // A fixed date: the documents are the same whenever they are made.
    addText(asset, "created", "2024-01-01T00:00:00Z");
    addText(asset, "modified", "2024-01-01T00:00:00Z");
    addText(asset, "title", title);
    pugi::xml_node unit = asset.append_child("unit");
    unit.append_attribute("name") = "meter";
    unit.append_attribute("meter") = "1";
    addText(asset, "up_axis", "Y_UP");
}

pugi::xml_node Document::add(const std::string& library, const std::string& element,
                             const std::string& id, const std::string& name)
{
    const std::string libraryName = "library_" + library;
    pugi::xml_node parent = m_root.child(libraryName.c_str());
    if (!parent)
    {
        parent = m_root.append_child(libraryName.c_str());
    }
    pugi::xml_node result = parent.append_child(element.c_str());
    setID(result, id, name);
    return result;
}

void Document::addImage(const std::string& id, const std::string& file)
{
    addText(add("images", "image", id, id), "init_from", file);
}

pugi::xml_node Document::addEffect(const std::string& id)
{
    return add("effects", "effect", id).append_child("profile_COMMON");
}

void Document::addMaterialOf(const std::string& id, const std::string& effectID)
{
    pugi::xml_node material = add("materials", "material", id, id);
    material.append_child("instance_effect").append_attribute("url") = ("#" + effectID).c_str();
}

void Document::addMaterial(const std::string& id, const std::string& effectID, const Vec3& colour)
{
    pugi::xml_node technique = addEffect(effectID).append_child("technique");
    technique.append_attribute("sid") = "common";
    addText(technique.append_child("lambert").append_child("diffuse"), "color",
            vectorText(colour) + " 1", "diffuse");
    addMaterialOf(id, effectID);
}

void Document::addTexturedMaterial(const std::string& id, const std::string& effectID,
                                   const std::string& imageID)
{
    pugi::xml_node profile = addEffect(effectID);
    const std::string surface = imageID + "-surface";
    const std::string sampler = imageID + "-sampler";
    pugi::xml_node surfaceParameter = profile.append_child("newparam");
    surfaceParameter.append_attribute("sid") = surface.c_str();
    pugi::xml_node surfaceNode = surfaceParameter.append_child("surface");
    surfaceNode.append_attribute("type") = "2D";
    addText(surfaceNode, "init_from", imageID);
    pugi::xml_node samplerParameter = profile.append_child("newparam");
    samplerParameter.append_attribute("sid") = sampler.c_str();
    addText(samplerParameter.append_child("sampler2D"), "source", surface);
    pugi::xml_node technique = profile.append_child("technique");
    technique.append_attribute("sid") = "common";
    pugi::xml_node texture =
        technique.append_child("lambert").append_child("diffuse").append_child("texture");
    texture.append_attribute("texture") = sampler.c_str();
    texture.append_attribute("texcoord") = "UVMap";
    addMaterialOf(id, effectID);
}

void Document::addShape(const std::string& id, const std::string& name, const Shape& shape)
{
    pugi::xml_node mesh = add("geometries", "geometry", id, name).append_child("mesh");
    addFloatSource(mesh, id + "-positions", listOf(shape.positions, true), {"X", "Y", "Z"});
    addFloatSource(mesh, id + "-normals", listOf(shape.normals, true), {"X", "Y", "Z"});
    addFloatSource(mesh, id + "-map", listOf(shape.textures, false), {"S", "T"});
    pugi::xml_node vertices = mesh.append_child("vertices");
    setID(vertices, id + "-vertices", "");
    addInput(vertices, "POSITION", id + "-positions");
    addFaces(mesh, id, shape);
}

pugi::xml_node Document::setScene(const std::string& id, const std::string& name)
{
    pugi::xml_node scene = add("visual_scenes", "visual_scene", id, name);
    m_root.append_child("scene").append_child("instance_visual_scene").append_attribute("url") =
        ("#" + id).c_str();
    return scene;
}

void Document::setPhysics(const std::string& id)
{
    pugi::xml_node instance = m_root.child("scene").prepend_child("instance_physics_scene");
    instance.append_attribute("url") = ("#" + id).c_str();
}

std::string Document::text() const
{
    std::ostringstream out;
    out.imbue(std::locale::classic());
    m_document.save(out, "  ");
    return out.str();
}

void addFloatSource(pugi::xml_node parent, const std::string& id, const NumberList& values,
                    const std::vector<std::string>& parameters)
{
    pugi::xml_node accessor = addSource(parent, id, values, parameters.size());
    for (const std::string& parameter : parameters)
    {
        pugi::xml_node param = accessor.append_child("param");
        param.append_attribute("name") = parameter.c_str();
        param.append_attribute("type") = "float";
    }
}

void addMatrixSource(pugi::xml_node parent, const std::string& id, const NumberList& values)
{
    pugi::xml_node param = addSource(parent, id, values, 16).append_child("param");
    param.append_attribute("name") = "TRANSFORM";
    param.append_attribute("type") = "float4x4";
}

void addInput(pugi::xml_node parent, const std::string& semantic, const std::string& sourceID,
              int offset)
{
    pugi::xml_node input = parent.append_child("input");
    input.append_attribute("semantic") = semantic.c_str();
    input.append_attribute("source") = ("#" + sourceID).c_str();
    if (offset >= 0)
    {
        input.append_attribute("offset") = offset;
    }
    if (semantic == "TEXCOORD")
    {
        input.append_attribute("set") = 0;
    }
}

pugi::xml_node addText(pugi::xml_node parent, const std::string& element, const std::string& text,
                       const std::string& sid)
{
    pugi::xml_node result = parent.append_child(element.c_str());
    if (!sid.empty())
    {
        result.append_attribute("sid") = sid.c_str();
    }
    result.text() = text.c_str();
    return result;
}

pugi::xml_node addNode(pugi::xml_node parent, const std::string& id, const std::string& name,
                       const Vec3& translation, const std::string& type)
{
    pugi::xml_node node = parent.append_child("node");
    setID(node, id, name);
    if (type == "JOINT")
    {
        node.append_attribute("sid") = id.c_str();
    }
    node.append_attribute("type") = type.c_str();
    addText(node, "translate", vectorText(translation), "translate");
    return node;
}

pugi::xml_node addObject(pugi::xml_node parent, const std::string& id, const Vec3& place,
                         const Vec3& turn, const Vec3& size)
{
    pugi::xml_node node = addNode(parent, id, id, place);
    addText(node, "rotate", "0 0 1 " + numberText(turn.z), "rotateZ");
    addText(node, "rotate", "0 1 0 " + numberText(turn.y), "rotateY");
    addText(node, "rotate", "1 0 0 " + numberText(turn.x), "rotateX");
    addText(node, "scale", numberText(size.x) + " " + numberText(size.y) + " " + numberText(size.z),
            "scale");
    return node;
}

void addInstance(pugi::xml_node node, const std::string& kind, const std::string& id)
{
    node.append_child(("instance_" + kind).c_str()).append_attribute("url") = ("#" + id).c_str();
}

void addGeometryInstance(pugi::xml_node node, const std::string& geometryID,
                         const std::string& materialID)
{
    addInstance(node, "geometry", geometryID);
    bindMaterials(node.last_child(), {{"surface", materialID}});
}

void bindMaterials(pugi::xml_node instance, const std::vector<Binding>& bindings)
{
    pugi::xml_node common = instance.append_child("bind_material").append_child("technique_common");
    for (const Binding& binding : bindings)
    {
        pugi::xml_node material = common.append_child("instance_material");
        material.append_attribute("symbol") = binding.symbol.c_str();
        material.append_attribute("target") = ("#" + binding.materialID).c_str();
        pugi::xml_node map = material.append_child("bind_vertex_input");
        map.append_attribute("semantic") = "UVMap";
        map.append_attribute("input_semantic") = "TEXCOORD";
        map.append_attribute("input_set") = 0;
    }
}
} // namespace velmoran::generator
