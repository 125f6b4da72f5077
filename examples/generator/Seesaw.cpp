#include "examples/generator/Seesaw.h"

#include "examples/generator/Document.h"

#include <algorithm>

namespace velmoran::generator
{
namespace
{
// Metres
constexpr double FULCRUM_RADIUS = 0.3;
constexpr double FULCRUM_LENGTH = 0.4;
constexpr double PLANK_HEIGHT = 0.05;
constexpr double BALL_RADIUS = 0.12;
constexpr double TOP = 1.5 * FULCRUM_RADIUS; ///< of the fulcrum, whose base is on the ground

const Vec3 PLANK = {2.4, PLANK_HEIGHT, 0.4};

void addGeometries(Document& document, double detail)
{
    const int sides = std::max(6, static_cast<int>(16.0 * detail));
    const double r = FULCRUM_RADIUS;
    document.addShape("ground", "ground", stretched(makeSquare(), {4.0, 1.0, 3.0}));
    document.addShape("fulcrum", "fulcrum",
                      stretched(makeFrustum(1.0, 1.0, 3), {r, FULCRUM_LENGTH, r}));
    document.addShape("plank", "plank", stretched(makeBox(), PLANK));
    document.addShape("block", "block", stretched(makeFrustum(1.0, 1.0, 6), {0.15, 0.3, 0.15}));
    document.addShape("ball", "ball",
                      stretched(makeSphere(sides), {BALL_RADIUS, BALL_RADIUS, BALL_RADIUS}));
    document.add("geometries", "geometry", "block-hull")
        .append_child("convex_mesh")
        .append_attribute("convex_hull_of") = "#block";
}

void addPhysicsMaterial(Document& document, const std::string& id, const char* friction,
                        const char* restitution)
{
    pugi::xml_node common = document.add("physics_materials", "physics_material", id, id)
                                .append_child("technique_common");
    addText(common, "dynamic_friction", friction);
    addText(common, "restitution", restitution);
    addText(common, "static_friction", friction);
}

/// Returns the body's only shape, to be filled.
pugi::xml_node addBody(pugi::xml_node model, const std::string& sid, double mass,
                       const std::string& materialID)
{
    pugi::xml_node body = model.append_child("rigid_body");
    body.append_attribute("sid") = sid.c_str();
    pugi::xml_node common = body.append_child("technique_common");
    addText(common, "dynamic", mass > 0.0 ? "true" : "false");
    addText(common, "mass", numberText(mass));
    addInstance(common, "physics_material", materialID);
    return common.append_child("shape");
}

void addBodies(pugi::xml_node model)
{
    addText(addBody(model, "ground", 0.0, "wood").append_child("plane"), "equation", "0 1 0 0");
    addInstance(addBody(model, "fulcrum", 0.0, "wood"), "geometry", "fulcrum");
    pugi::xml_node plank = addBody(model, "plank", 12.0, "wood");
    addText(plank.append_child("box"), "half_extents",
            numberText(PLANK.x / 2.0) + ' ' + numberText(PLANK.y / 2.0) + ' ' +
                numberText(PLANK.z / 2.0));
    addText(plank, "translate", "0 " + numberText(PLANK.y / 2.0) + " 0");
    pugi::xml_node block = addBody(model, "block", 3.0, "wood");
    addText(block, "density", "650");
    addInstance(block, "geometry", "block-hull");
    addText(addBody(model, "ball", 1.0, "rubber").append_child("sphere"), "radius",
            numberText(BALL_RADIUS));
}

/// The plank turns about the upper edge of the fulcrum. In the frame of that, which lies on its
/// side, the edge runs along y.
void addHinge(pugi::xml_node model)
{
    pugi::xml_node hinge = model.append_child("rigid_constraint");
    hinge.append_attribute("sid") = "hinge";
    pugi::xml_node reference = hinge.append_child("ref_attachment");
    reference.append_attribute("rigid_body") = "./fulcrum";
    addText(reference, "translate",
            "0 " + numberText(FULCRUM_LENGTH / 2.0) + ' ' + numberText(FULCRUM_RADIUS));
    addText(reference, "rotate", "1 0 0 90");
    hinge.append_child("attachment").append_attribute("rigid_body") = "./plank";
    pugi::xml_node common = hinge.append_child("technique_common");
    addText(common, "enabled", "true");
    addText(common, "interpenetrate", "false");
    pugi::xml_node swing = common.append_child("limits").append_child("swing_cone_and_twist");
    addText(swing, "min", "0 0 -20");
    addText(swing, "max", "0 0 20");
}

void addPhysicsScene(Document& document)
{
    pugi::xml_node scene = document.add("physics_scenes", "physics_scene", "yard-physics", "Yard");
    addInstance(scene, "physics_model", "seesaw");
    pugi::xml_node model = scene.last_child();
    model.append_attribute("parent") = "#yard";
    for (const char* body : {"ground", "fulcrum", "plank", "block", "ball"})
    {
        pugi::xml_node instance = model.append_child("instance_rigid_body");
        instance.append_attribute("body") = body;
        instance.append_attribute("target") = ("#" + std::string(body) + "-node").c_str();
    }
    model.append_child("instance_rigid_constraint").append_attribute("constraint") = "hinge";
    pugi::xml_node common = scene.append_child("technique_common");
    addText(common, "gravity", "0 -9.81 0");
    addText(common, "time_step", "0.01");
    document.setPhysics("yard-physics");
}

void addNodes(Document& document)
{
    pugi::xml_node yard = addNode(document.setScene("yard-scene", "Yard"), "yard", "Yard", {});
    const auto add = [yard](const std::string& id, const Vec3& place, const Vec3& turn,
                            const std::string& materialID)
    { addGeometryInstance(addObject(yard, id + "-node", place, turn), id, materialID); };
    add("ground", {}, {}, "grass");
    add("fulcrum", {0.0, FULCRUM_RADIUS / 2.0, FULCRUM_LENGTH / 2.0}, {-90.0, 0.0, 0.0}, "pine");
    add("plank", {0.0, TOP, 0.0}, {}, "pine");
    add("block", {-0.95, TOP + PLANK_HEIGHT, 0.0}, {}, "blue");
    add("ball", {0.95, TOP + PLANK_HEIGHT + BALL_RADIUS, 0.0}, {}, "orange");
}
} // namespace

std::string makeSeesawDocument(double detail)
{
    Document document("A seesaw");
    document.addMaterial("grass", "grass-fx", {0.35, 0.55, 0.25});
    document.addMaterial("pine", "pine-fx", {0.8, 0.65, 0.4});
    document.addMaterial("blue", "blue-fx", {0.2, 0.35, 0.7});
    document.addMaterial("orange", "orange-fx", {0.9, 0.5, 0.15});
    addGeometries(document, detail);
    addPhysicsMaterial(document, "wood", "0.5", "0.2");
    addPhysicsMaterial(document, "rubber", "0.9", "0.7");
    pugi::xml_node model = document.add("physics_models", "physics_model", "seesaw", "Seesaw");
    addBodies(model);
    addHinge(model);
    addNodes(document);
    addPhysicsScene(document);
    return document.text();
}
} // namespace velmoran::generator
