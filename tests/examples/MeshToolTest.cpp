#include "tests/examples/ToolFiles.h"

// Refining and measuring meshes, and keeping their polygons.
namespace velmoran::examples::test
{
namespace
{
/// The square of side 1 as a polygon, below a node that is turned by a right angle about z and
/// moved; and half of it once more as a triangle.
std::string square(const std::string& extra = "")
{
    return quad("<polylist material=\"paint\">" + VERTEX_INPUT +
                "<vcount>4</vcount><p>0 1 2 3</p></polylist><triangles>" + VERTEX_INPUT +
                "<p>0 1 2</p></triangles>") +
           extra +
           visualScene("<node id=\"outer\"><translate>5 0 0</translate><node id=\"turned\">"
                       "<rotate>0 0 1 90</rotate><instance_geometry url=\"#quad\"/></node></node>"
                       "<node id=\"empty\"/>");
}

/// Four times the triangles and the same area in every primitive.
void expectRefined(const std::string& file, const json& result)
{
    SCOPED_TRACE(file);
    std::size_t primitives = 0;
    for (const json& geometry : result["geometries"])
    {
        SCOPED_TRACE(geometry["id"].get<std::string>());
        for (const json& primitive : geometry["primitives"])
        {
            const double area = primitive["area_before"];
            EXPECT_EQ(primitive["kind"], "triangles");
            EXPECT_EQ(primitive["triangles_after"].get<int>(),
                      4 * primitive["triangles_before"].get<int>());
            EXPECT_NEAR(primitive["area_after"].get<double>(), area, 1e-5 * area);
            ++primitives;
        }
        EXPECT_GE(geometry["subdivision_seconds"].get<double>(), 0.0);
    }
    EXPECT_GT(primitives, 0U);
}

using MeshTool = ToolFolder;
} // namespace

TEST_F(MeshTool, TellsTrianglesAndAreasOfEveryPrimitive)
{
    const std::string file = write("square.dae", square());
    const json result = runJson({"mesh", file});
    EXPECT_EQ(result["geometries"], json::parse(R"([{"id": "quad", "name": "Quad", "skin": null,
        "subdivision_seconds": null, "normals_seconds": null, "triangles_before": 3,
        "triangles_after": 3, "area_before": 1.5, "area_after": 1.5, "primitives": [
            {"kind": "triangles", "material": "paint", "triangles_before": 2,
             "triangles_after": 2, "area_before": 1.0, "area_after": 1.0},
            {"kind": "triangles", "material": "velmoran_material", "triangles_before": 1,
             "triangles_after": 1, "area_before": 0.5, "area_after": 0.5}]}])"));
    EXPECT_EQ(result["totals"]["area_after"], 1.5);
    const Outcome text = run({"mesh", file, "--normals"});
    EXPECT_THAT(text.out, HasSubstr("square.dae, normals computed anew\n"));
    EXPECT_THAT(text.out, HasSubstr("    triangles paint                      2     1\n"));
}

TEST_F(MeshTool, SubdivisionQuadruplesTrianglesAndKeepsTheArea)
{
    const auto files = wholeDocuments({"room.dae", "seesaw.dae", "avatar.dae"});
    for (const std::string& file : files)
    {
        expectRefined(file, runJson({"mesh", file, "--subdivide", "1", "--normals"}));
    }
    const json twice = runJson({"mesh", files[0], "--subdivide", "2"})["totals"];
    EXPECT_EQ(twice["triangles_after"].get<int>(), 16 * twice["triangles_before"].get<int>());
}

TEST_F(MeshTool, SkinsAreRefinedAlong)
{
    const std::string avatar = exampleDocument("avatar.dae");
    const std::string obj = path("fine.obj");
    const Outcome outcome = run({"mesh", avatar, "--subdivide", "1", "--obj", obj});
    ASSERT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, IsEmpty()) << "the skin has all its lists";
    EXPECT_THAT(outcome.out, HasSubstr("  human-template-lib, skin "));
    // The skin leaves the body at rest where it is bound, midpoints included.
    const std::string coarse = path("coarse.obj");
    run({"skin", avatar, "--obj", coarse});
    const Points points = readPoints(coarse);
    const Points refined = readPoints(obj);
    EXPECT_GT(refined.cols(), 3 * points.cols());
    EXPECT_NEAR(refined.row(1).maxCoeff(), points.row(1).maxCoeff(), 1e-5);
}

TEST_F(MeshTool, KeptPolygonsAreToldOfAndWrittenButNotEdited)
{
    const std::string file = write("square.dae", square());
    const Outcome outcome = run({"mesh", file, "--keep-polygons", "--subdivide", "1", "--normals",
                                 "--obj", path("square.obj")});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, HasSubstr("\"quad\" has polygons, which can't be edited"));
    EXPECT_THAT(outcome.out, HasSubstr("    polygons paint                       2     1\n"));
    EXPECT_THAT(outcome.out, HasSubstr(": 4 points, 1 triangle, 1 polygon; materials"));
    EXPECT_THAT(outcome.out, Not(HasSubstr("Implement me")));
    EXPECT_THAT(readFile("square.obj"), HasSubstr("\nf 1 2 3 4\n"));
    EXPECT_THAT(readFile("square.obj"), HasSubstr("\nf 1 2 3\n"));

    const json facts = runJson({"info", file, "--keep-polygons"});
    EXPECT_EQ(facts["totals"]["faces_by_kind"], json::parse(R"({"polygons": 1, "triangles": 1})"));
    EXPECT_EQ(facts["totals"]["triangles"], 3);
    EXPECT_THAT(run({"info", file, "--keep-polygons"}).out,
                HasSubstr("  quad              4          3         1  (0, 0, 0)"));

    for (const auto& [document, reference] : wholeOtherDocuments())
    {
        SCOPED_TRACE(document);
        const json kept = runJson({"info", document, "--keep-polygons"})["totals"];
        const json& faces = reference["totals"]["faces_by_kind"];
        EXPECT_EQ(kept["triangles"], reference["totals"]["triangles"]);
        EXPECT_EQ(kept["faces_by_kind"].value("polygons", 0),
                  faces.value("polygons", 0) + faces.value("polylist", 0));
    }
}

TEST_F(MeshTool, WarnsWhereOnlyOneOfSeveralSkinsIsRefined)
{
    const std::string skin = "<skin source=\"#quad\"/></controller>";
    const std::string file =
        write("two.dae", square("<library_controllers><controller id=\"a\">" + skin +
                                "<controller id=\"b\">" + skin + "</library_controllers>"));
    EXPECT_THAT(run({"mesh", file, "--subdivide", "1"}).err,
                HasSubstr("\"quad\" has 2 skins, of which only the first is refined along"));
    EXPECT_THAT(run({"mesh", file, "--normals"}).err, Not(HasSubstr("skins")));
}

TEST_F(MeshTool, BoundsAreThoseOfTheLibrary)
{
    const std::string file = write("square.dae", square());
    const json bounds = runJson({"bounds", file, "--keep-polygons"});
    const json own = json::parse(R"({"min": [0.0, 0.0, 0.0], "max": [1.0, 1.0, 0.0],
                                     "center": [0.5, 0.5, 0.0]})");
    const json& geometry = bounds["geometries"][0];
    EXPECT_EQ(geometry["max"], own["max"]);
    EXPECT_EQ(geometry["center"], json::parse("[1.0, 1.0, 0.0]")) << "the sum of both";
    EXPECT_EQ(geometry["primitives"][0]["kind"], "polygons");
    EXPECT_EQ(geometry["primitives"][0]["center"], own["center"]);
    // The corner (1, 1) is turned to (-1, 1) and moved to (4, 1); (0, 0) becomes (5, 0).
    ASSERT_EQ(bounds["nodes"].size(), 2U) << "the node without geometry is not listed";
    EXPECT_EQ(bounds["nodes"][1]["id"], "turned");
    EXPECT_NEAR(bounds["nodes"][1]["min"][0].get<double>(), 5.0, 1e-6);
    EXPECT_NEAR(bounds["nodes"][1]["max"][0].get<double>(), 4.0, 1e-6);
    EXPECT_NEAR(bounds["scene"]["max"][1].get<double>(), 1.0, 1e-6);
    EXPECT_THAT(run({"bounds", file}).out,
                HasSubstr("  quad                           (0, 0, 0)  (1, 1, 0)  (1, 1, 0)\n"));

    const std::string nothing = write("nothing.dae", visualScene("<node id=\"n\"/>"));
    EXPECT_EQ(runJson({"bounds", nothing})["scene"], nullptr);
    EXPECT_THAT(run({"bounds", nothing}).out, HasSubstr("Scene       empty\n"));
}

TEST_F(MeshTool, PhysicsIsCounted)
{
    const std::string seesaw = exampleDocument("seesaw.dae");
    const json facts = runJson({"info", seesaw});
    expectHolds(facts, R"({"counts": {"physics_materials": 2, "physics_models": 1,
        "rigid_bodies": 5, "dynamic_rigid_bodies": 3, "physics_shapes": 5, "rigid_constraints": 1,
        "physics_scenes": 1, "instance_rigid_body": 5, "instance_physics_scene": 1,
        "instance_rigid_constraint": 1, "instance_physics_model": 1},
        "ids": {"physics_scenes": ["yard-physics"]}})");
    EXPECT_EQ(facts["geometries"][2]["convex_hull_of"], "block");
    EXPECT_THAT(run({"info", seesaw}).out,
                HasSubstr("Physics  2 materials; 1 model of 5 bodies (3 dynamic), 5 shapes, 1 "
                          "constraint; 1 scene of 5 bodies\n"));
    const std::string room = exampleDocument("room.dae");
    EXPECT_THAT(run({"info", room}).out, Not(HasSubstr("Physics")));
    EXPECT_THAT(run({"merge", room, seesaw}).out,
                HasSubstr("not merged  1 physics model, 1 physics scene ("));
}

TEST_F(MeshTool, WrongUseIsRefused)
{
    const std::string file = write("square.dae", square());
    expectRefused({
        {{"mesh", file, "--subdivide", "13"}, 2, "--subdivide"},
        {{"mesh", file, "--subdivide", "-1"}, 2, "--subdivide"},
        {{"mesh", file, "--obj", file}, 2, "would write over"},
        {{"mesh", file, "--obj", "x.obj", "--json"}, 2, "--json"},
        {{"mesh", exampleDocument("room.dae"), "--subdivide", "9"},
         1,
         "would make more than 64000000 triangles"},
        {{"mesh", write("nothing.dae", visualScene(""))}, 1, "holds no mesh"},
        {{"bounds", path("gone.dae")}, 1, "can't be read"},
    });
}
} // namespace velmoran::examples::test
