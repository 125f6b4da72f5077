#include "examples/generator/Room.h"

#include "examples/generator/Document.h"

#include <algorithm>
#include <vector>

namespace velmoran::generator
{
namespace
{
/// A piece of furniture's part: a shape, stretched and placed.
struct Part
{
    const char* id;
    const char* geometryID;
    const char* materialID;
    Vec3 place;
    Vec3 size;
};

const std::vector<Part> TABLE = {
    {"table-top", "box", "wood", {0.0, 0.71, 0.0}, {1.4, 0.04, 0.8}},
    {"table-leg-1", "box", "metal", {0.62, 0.0, 0.32}, {0.05, 0.71, 0.05}},
    {"table-leg-2", "box", "metal", {-0.62, 0.0, 0.32}, {0.05, 0.71, 0.05}},
    {"table-leg-3", "box", "metal", {0.62, 0.0, -0.32}, {0.05, 0.71, 0.05}},
    {"table-leg-4", "box", "metal", {-0.62, 0.0, -0.32}, {0.05, 0.71, 0.05}},
};

const std::vector<Part> CHAIR = {
    {"chair-seat", "box", "leather", {0.0, 0.43, 0.0}, {0.44, 0.05, 0.44}},
    {"chair-back", "box", "leather", {0.0, 0.52, -0.2}, {0.42, 0.4, 0.035}},
    {"chair-leg-1", "box", "wood", {0.18, 0.0, 0.18}, {0.04, 0.43, 0.04}},
    {"chair-leg-2", "box", "wood", {-0.18, 0.0, 0.18}, {0.04, 0.43, 0.04}},
    {"chair-leg-3", "box", "wood", {0.18, 0.0, -0.2}, {0.04, 0.95, 0.04}},
    {"chair-leg-4", "box", "wood", {-0.18, 0.0, -0.2}, {0.04, 0.95, 0.04}},
};

const std::vector<Part> LAMP = {
    {"lamp-foot", "frustum", "metal", {0.0, 0.0, 0.0}, {0.16, 0.03, 0.16}},
    {"lamp-pole", "frustum", "metal", {0.0, 0.03, 0.0}, {0.015, 1.4, 0.015}},
    {"lamp-shade", "shade", "yellow", {0.0, 1.35, 0.0}, {0.22, 0.26, 0.22}},
};

void addMaterials(Document& document)
{
    document.addImage("pattern", "textures/wood.png");
    document.addTexturedMaterial("wood", "wood-fx", "pattern");
    document.addMaterial("white", "white-fx", {0.93, 0.93, 0.9});
    document.addMaterial("leather", "leather-fx", {0.36, 0.2, 0.12});
    document.addMaterial("metal", "metal-fx", {0.55, 0.57, 0.6});
    document.addMaterial("red", "red-fx", {0.75, 0.13, 0.11});
    document.addMaterial("yellow", "yellow-fx", {0.95, 0.85, 0.55});
}

void addGeometries(Document& document, double detail)
{
    const int sides = std::max(6, static_cast<int>(24.0 * detail));
    document.addShape("square", "square", makeSquare());
    document.addShape("box", "box", makeBox());
    document.addShape("frustum", "frustum", makeFrustum(1.0, 0.9, sides));
    document.addShape("shade", "shade", makeFrustum(1.0, 0.6, sides));
    document.addShape("sphere", "sphere", makeSphere(sides));
}

void addCamera(Document& document)
{
    pugi::xml_node camera = document.add("cameras", "camera", "room-camera", "Room camera");
    pugi::xml_node perspective =
        camera.append_child("optics").append_child("technique_common").append_child("perspective");
    addText(perspective, "yfov", "45", "yfov");
    addText(perspective, "aspect_ratio", "1.5");
    addText(perspective, "znear", "0.1", "znear");
    addText(perspective, "zfar", "100", "zfar");
}

void addLight(Document& document)
{
    pugi::xml_node light = document.add("lights", "light", "lamp-light", "Lamp light");
    pugi::xml_node point = light.append_child("technique_common").append_child("point");
    addText(point, "color", "1 0.94 0.8", "color");
    addText(point, "constant_attenuation", "1");
    addText(point, "linear_attenuation", "0");
    addText(point, "quadratic_attenuation", "0.2");
}

void addFurniture(pugi::xml_node room, const std::string& id, const Vec3& place, double turn,
                  const std::vector<Part>& parts)
{
    pugi::xml_node node = addObject(room, id, place, {0.0, turn, 0.0});
    node.append_attribute("layer") = "furniture";
    for (const Part& part : parts)
    {
        addGeometryInstance(addObject(node, part.id, part.place, {}, part.size), part.geometryID,
                            part.materialID);
    }
}

void addWalls(pugi::xml_node room)
{
    addGeometryInstance(addObject(room, "floor", {}, {}, {5.0, 1.0, 4.0}), "square", "wood");
    pugi::xml_node walls = addNode(room, "walls", "walls", {});
    walls.append_attribute("layer") = "backdrop cast_shadow";
    addGeometryInstance(
        addObject(walls, "wall-back", {0.0, 1.25, -2.0}, {90.0, 0.0, 0.0}, {5.0, 1.0, 2.5}),
        "square", "white");
    addGeometryInstance(
        addObject(walls, "wall-left", {-2.5, 1.25, 0.0}, {0.0, 0.0, -90.0}, {2.5, 1.0, 4.0}),
        "square", "white");
}

void addBall(pugi::xml_node room)
{
    pugi::xml_node ball =
        addObject(room, "ball", {0.95, 0.16, 0.7}, {0.0, 30.0, 20.0}, {0.16, 0.16, 0.16});
    ball.append_attribute("layer") = "toys cast_shadow";
    addGeometryInstance(ball, "sphere", "red");
}
} // namespace

std::string makeRoomDocument(double detail)
{
    Document document("A room");
    addCamera(document);
    addLight(document);
    addMaterials(document);
    addGeometries(document, detail);
    pugi::xml_node room = addNode(document.setScene("room-scene", "Room"), "room", "Room", {});
    addWalls(room);
    addFurniture(room, "table", {-1.1, 0.0, -1.0}, 0.0, TABLE);
    addFurniture(room, "chair", {-0.9, 0.0, -0.05}, 165.0, CHAIR);
    addFurniture(room, "lamp", {1.5, 0.0, -1.4}, 0.0, LAMP);
    addInstance(addNode(room.find_child_by_attribute("id", "lamp"), "lamp-bulb", "lamp-bulb",
                        {0.0, 1.45, 0.0}),
                "light", "lamp-light");
    addBall(room);
    addInstance(addObject(room, "room-view", {1.6, 1.7, 4.2}, {-8.0, 20.0, 0.0}), "camera",
                "room-camera");
    return document.text();
}
} // namespace velmoran::generator
