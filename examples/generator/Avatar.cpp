#include "examples/generator/Avatar.h"

#include "examples/generator/Document.h"

#include <algorithm>
#include <map>

namespace velmoran::generator
{
namespace
{
const char* const NODE_ID = "human-template";
const char* const GEOMETRY_ID = "human-template-lib";
const char* const SKIN_ID = "human-template-skin";

/// How a garment is written: its symbol in the mesh and its material.
struct Cloth
{
    Garment garment;
    const char* symbol;
    const char* materialID;
    const char* effectID;
    Vec3 colour;
};

// The shirt is textured; its colour is not used. The room has a "pattern", a "white" and
// a "leather" too, so that merging both shows what happens to names that are taken.
const std::vector<Cloth> CLOTHES = {
    {Garment::SKIN, "skin", "skin", "skin-fx", {0.87, 0.67, 0.55}},
    {Garment::HAIR, "hair", "hair", "hair-fx", {0.27, 0.16, 0.09}},
    {Garment::SHIRT, "shirt", "white", "shirt-fx", {0.9, 0.9, 0.9}},
    {Garment::TROUSERS, "trousers", "denim", "denim-fx", {0.2, 0.29, 0.52}},
    {Garment::SHOES, "shoes", "leather", "leather-fx", {0.16, 0.12, 0.11}},
};

void addMaterials(Document& document)
{
    document.addImage("pattern", "textures/shirt.png");
    for (const Cloth& cloth : CLOTHES)
    {
        if (cloth.garment == Garment::SHIRT)
        {
            document.addTexturedMaterial(cloth.materialID, cloth.effectID, "pattern");
        }
        else
        {
            document.addMaterial(cloth.materialID, cloth.effectID, cloth.colour);
        }
    }
}

void addVectors(pugi::xml_node mesh, const std::string& suffix, const std::vector<Vec3>& vectors,
                int decimals)
{
    NumberList values(12);
    for (const Vec3& v : vectors)
    {
        values.add(v.x, decimals);
        values.add(v.y, decimals);
        values.add(v.z, decimals);
    }
    addFloatSource(mesh, GEOMETRY_ID + suffix, values, {"X", "Y", "Z"});
}

/// Texture coordinates as if the picture were thrown onto the figure from the front.
void addMap(pugi::xml_node mesh, const std::vector<Vec3>& points)
{
    double height = 0.0;
    for (const Vec3& p : points)
    {
        height = std::max(height, p.y);
    }
    NumberList values(12);
    for (const Vec3& p : points)
    {
        values.add(0.5 + 0.5 * p.x / height, 4);
        values.add(std::clamp(p.y / height, 0.0, 1.0), 4);
    }
    addFloatSource(mesh, std::string(GEOMETRY_ID) + "-map", values, {"S", "T"});
}

void addTriangles(pugi::xml_node mesh, const Body& body, const Cloth& cloth)
{
    NumberList indices(27);
    for (std::size_t i = 0; i < body.surface.triangles.size(); ++i)
    {
        if (body.garments[i] != cloth.garment)
        {
            continue;
        }
        for (const int corner : body.surface.triangles[i])
        {
            for (int input = 0; input < 3; ++input)
            {
                indices.add(corner);
            }
        }
    }
    pugi::xml_node triangles = mesh.append_child("triangles");
    triangles.append_attribute("count") = static_cast<unsigned long long>(indices.count() / 9);
    triangles.append_attribute("material") = cloth.symbol;
    addInput(triangles, "VERTEX", std::string(GEOMETRY_ID) + "-vertices", 0);
    addInput(triangles, "NORMAL", std::string(GEOMETRY_ID) + "-normals", 1);
    addInput(triangles, "TEXCOORD", std::string(GEOMETRY_ID) + "-map", 2);
    addText(triangles, "p", indices.text());
}

void addGeometry(Document& document, const Body& body)
{
    pugi::xml_node mesh =
        document.add("geometries", "geometry", GEOMETRY_ID, "body").append_child("mesh");
    addVectors(mesh, "-positions", body.surface.points, 5);
    addVectors(mesh, "-normals", body.normals, 4);
    addMap(mesh, body.surface.points);
    pugi::xml_node vertices = mesh.append_child("vertices");
    vertices.append_attribute("id") = (std::string(GEOMETRY_ID) + "-vertices").c_str();
    addInput(vertices, "POSITION", std::string(GEOMETRY_ID) + "-positions");
    for (const Cloth& cloth : CLOTHES)
    {
        addTriangles(mesh, body, cloth);
    }
}

/// The joint names; not an IDREF_array, because the joints are looked up by SID too.
void addJointNames(pugi::xml_node skin, const std::vector<Joint>& skeleton)
{
    const std::string id = std::string(SKIN_ID) + "-joints";
    pugi::xml_node source = skin.append_child("source");
    source.append_attribute("id") = id.c_str();
    NumberList names(8);
    for (const Joint& joint : skeleton)
    {
        names.add(joint.name);
    }
    pugi::xml_node array = addText(source, "Name_array", names.text());
    array.append_attribute("id") = (id + "-array").c_str();
    array.append_attribute("count") = static_cast<unsigned long long>(names.count());
    pugi::xml_node accessor = source.append_child("technique_common").append_child("accessor");
    accessor.append_attribute("source") = ("#" + id + "-array").c_str();
    accessor.append_attribute("count") = static_cast<unsigned long long>(names.count());
    accessor.append_attribute("stride") = 1;
    pugi::xml_node param = accessor.append_child("param");
    param.append_attribute("name") = "JOINT";
    param.append_attribute("type") = "name";
}

void addInverseBindMatrices(pugi::xml_node skin, const std::vector<Joint>& skeleton)
{
    NumberList values(16);
    for (const Joint& joint : skeleton)
    {
        const double c = cosine(joint.turn);
        const double s = sine(joint.turn);
        const Vec3& p = joint.position;
        for (const double value : {c, s, 0.0, -c * p.x - s * p.y, //
                                   -s, c, 0.0, s * p.x - c * p.y, //
                                   0.0, 0.0, 1.0, -p.z,           //
                                   0.0, 0.0, 0.0, 1.0})
        {
            values.add(value, 8);
        }
    }
    addMatrixSource(skin, std::string(SKIN_ID) + "-bind-poses", values);
}

void addInfluences(pugi::xml_node skin, const Body& body)
{
    NumberList weights(12);
    NumberList counts(40);
    NumberList pairs(24);
    for (const std::vector<Influence>& influences : body.influences)
    {
        counts.add(static_cast<int>(influences.size()));
        for (const Influence& influence : influences)
        {
            pairs.add(influence.joint);
            pairs.add(static_cast<int>(weights.count()));
            weights.add(influence.weight / 10000.0, 4);
        }
    }
    const std::string id = SKIN_ID;
    addFloatSource(skin, id + "-weights", weights, {"WEIGHT"});
    pugi::xml_node joints = skin.append_child("joints");
    addInput(joints, "JOINT", id + "-joints");
    addInput(joints, "INV_BIND_MATRIX", id + "-bind-poses");
    pugi::xml_node vertexWeights = skin.append_child("vertex_weights");
    vertexWeights.append_attribute("count") =
        static_cast<unsigned long long>(body.influences.size());
    addInput(vertexWeights, "JOINT", id + "-joints", 0);
    addInput(vertexWeights, "WEIGHT", id + "-weights", 1);
    addText(vertexWeights, "vcount", counts.text());
    addText(vertexWeights, "v", pairs.text());
}

void addSkin(Document& document, const Body& body)
{
    pugi::xml_node skin =
        document.add("controllers", "controller", SKIN_ID, "skin").append_child("skin");
    skin.append_attribute("source") = (std::string("#") + GEOMETRY_ID).c_str();
    addText(skin, "bind_shape_matrix", "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1");
    addJointNames(skin, body.skeleton);
    addInverseBindMatrices(skin, body.skeleton);
    addInfluences(skin, body);
}

/// The tree of joints. The root joint stays without a translation of its own: what
/// resets it to the identity leaves the figure standing where it stood.
void addSkeleton(pugi::xml_node scene, const std::vector<Joint>& skeleton)
{
    std::vector<pugi::xml_node> nodes;
    for (const Joint& joint : skeleton)
    {
        pugi::xml_node node;
        if (joint.parent < 0)
        {
            pugi::xml_node stand = addNode(scene, "skeleton", "Skeleton", joint.localPosition);
            node = addNode(stand, joint.name, joint.name, {}, "JOINT");
        }
        else
        {
            node = addNode(nodes[static_cast<std::size_t>(joint.parent)], joint.name, joint.name,
                           joint.localPosition, "JOINT");
        }
        addText(node, "rotate", "0 0 1 " + numberText(joint.localTurn), "rotateZ");
        addText(node, "rotate", "0 1 0 0", "rotateY");
        addText(node, "rotate", "1 0 0 0", "rotateX");
        nodes.push_back(node);
    }
}

void addBodyNode(pugi::xml_node scene)
{
    pugi::xml_node node = addNode(scene, NODE_ID, "Human template", {});
    pugi::xml_node instance = node.append_child("instance_controller");
    instance.append_attribute("url") = (std::string("#") + SKIN_ID).c_str();
    addText(instance, "skeleton", "#sacrum");
    std::vector<Binding> bindings;
    for (const Cloth& cloth : CLOTHES)
    {
        bindings.push_back({cloth.symbol, cloth.materialID});
    }
    bindMaterials(instance, bindings);
}
} // namespace

std::string makeAvatarDocument(const Body& body, const std::string& title)
{
    Document document(title);
    addMaterials(document);
    addGeometry(document, body);
    addSkin(document, body);
    pugi::xml_node scene = document.setScene("avatar-scene", "Avatar");
    addSkeleton(scene, body.skeleton);
    addBodyNode(scene);
    return document.text();
}
} // namespace velmoran::generator
