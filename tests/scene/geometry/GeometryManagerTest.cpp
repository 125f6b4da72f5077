#include "tests/scene/SceneLog.h"
#include "tests/scene/geometry/GeometryBuilders.h"

#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/material/Material.h"

namespace velmoran::scene
{
namespace
{
using ::testing::Contains;

MeshPtr makeMesh(const std::string& id)
{
    return makeMeshOf("s", id);
}

GeometryManagerPtr makeLibrary(const std::vector<MeshPtr>& meshes)
{
    const auto library = boost::make_shared<GeometryManager>(core::event::EventManagerPtr());
    for (const MeshPtr& mesh : meshes)
    {
        library->addGeometry(mesh);
    }
    return library;
}

TEST(GeometryManager, KeepsTheFirstGeometryOfAnID)
{
    const auto a = boost::make_shared<Mesh>("a", "");
    const auto b = boost::make_shared<Mesh>("b", "");
    const auto library = makeLibrary({b, a});
    EXPECT_FALSE(library->addGeometry(boost::make_shared<Mesh>("a", "")));
    EXPECT_FALSE(library->addGeometry(IGeometryPtr()));
    std::vector<IGeometryPtr> all = {b};
    library->getGeometries(all);
    EXPECT_THAT(all, ElementsAre(b, a, b));
    EXPECT_EQ(library->getGeometryType("a"), IGeometry::MESH);
    EXPECT_EQ(library->getGeometryType("?"), IGeometry::INVALID);
    EXPECT_FALSE(library->getGeometry("?"));
}

TEST(GeometryManager, MergeRenamesOrDiscardsWhatClashes)
{
    for (const bool discardRepeated : {false, true})
    {
        const auto library = makeLibrary({makeMesh("a")});
        const auto other = makeLibrary({makeMesh("a"), makeMesh("b")});
        SceneLog log("GeometryManager.log");
        const auto renamed = library->mergeGeometries(other, discardRepeated);
        EXPECT_EQ(library->getGeometry("b"), other->getGeometry("b"));
        EXPECT_EQ(renamed.size(), discardRepeated ? 0u : 1u);
        EXPECT_EQ(library->getCount(), discardRepeated ? 2u : 3u);
        const std::string found = "[INFO] Found repeated geometry ID";
        EXPECT_THAT(log.take(), discardRepeated
                                    ? ElementsAre(found + " and discarded new one: a",
                                                  "[INFO] Added 1 new geometries")
                                    : ElementsAre(found + ". Renamed geometry a to a__renamed__",
                                                  "[INFO] Added 2 new geometries"));
    }
}

TEST(GeometryManager, MergeDropsACloneWhoseNewIDIsTaken)
{
    const auto library = makeLibrary({makeMesh("a")});
    const auto other = makeLibrary({makeMesh("a")});
    library->mergeGeometries(other, false);
    const IGeometryPtr firstClone = library->getGeometry("a__renamed__");
    SceneLog log("GeometryManager.log");
    EXPECT_THAT(library->mergeGeometries(other, false), ElementsAre(Pair("a", "a__renamed__")));
    EXPECT_EQ(library->getGeometry("a__renamed__"), firstClone);
    EXPECT_THAT(log.take(), Contains("[INFO] Added 1 new geometries"));

    // An incoming geometry that has the new ID by itself goes before the clone.
    const auto both = makeLibrary({makeMesh("a"), makeMesh("a__renamed__")});
    const auto fresh = makeLibrary({makeMesh("a")});
    fresh->mergeGeometries(both, false);
    EXPECT_EQ(fresh->getGeometry("a__renamed__"), both->getGeometry("a__renamed__"));

    EXPECT_THAT(library->mergeGeometries(GeometryManagerPtr(), false), IsEmpty());
    EXPECT_THAT(library->mergeGeometries(library, false), IsEmpty());
    EXPECT_EQ(library->getCount(), 2u);
}

TEST(GeometryManager, ReplacingGivesTheIDAndAnswersTheSymbols)
{
    const auto library = makeLibrary({makeMesh("a")});
    const boost::weak_ptr<IGeometry> old = library->getGeometry("a");
    const MeshPtr fresh = makeMeshOf("red", "x");
    EXPECT_THAT(library->replaceGeometry("?", fresh), IsEmpty());
    EXPECT_THAT(library->replaceGeometry("a", IGeometryPtr()), IsEmpty());
    EXPECT_THAT(library->replaceGeometry("a", fresh), ElementsAre("red"));
    EXPECT_EQ(library->getGeometry("a"), fresh);
    EXPECT_EQ(fresh->getID(), "a");
    EXPECT_TRUE(old.expired());
    library->replaceGeometry("a", fresh); // by itself: nothing is let go
    EXPECT_EQ(fresh->getPrimitiveCount(), 1u);

    fresh->setType(IGeometry::CONVEX_MESH);
    EXPECT_THAT(library->replaceGeometry("a", makeMeshOf("blue", "y")), IsEmpty());
    EXPECT_EQ(fresh->getPrimitiveCount(), 1u); // somebody outside holds it
    fresh->clearPrimitives();
}

TEST(GeometryManager, FreesAtItsEndWhatNobodyElseHolds)
{
    auto library = makeLibrary({makeMesh("a"), makeMesh("b"), makeMesh("c")});
    const auto mesh = [&](const char* id)
    { return boost::static_pointer_cast<Mesh>(library->getGeometry(id)); };
    const boost::weak_ptr<Mesh> twice = mesh("a");
    const boost::weak_ptr<Mesh> crossed = mesh("b");
    const MeshPtr held = mesh("c");
    mesh("a")->addPrimitive(mesh("a")->getPrimitive(0));
    mesh("a")->setID("other key");
    library->addGeometry(mesh("a"));
    // A primitive that holds "a" but stands in the list of "b" only.
    mesh("b")->addPrimitive(
        boost::make_shared<TriangleMeshPrimitive>(mesh("a"), std::vector<StreamMapping>()));

    library.reset();
    EXPECT_TRUE(twice.expired());
    EXPECT_TRUE(crossed.expired());
    EXPECT_EQ(held->getPrimitiveCount(), 1u);
    held->clearPrimitives();
}

TEST(InstanceGeometry, ChangesExistingBindingsOnly)
{
    const auto red = boost::make_shared<Material>("red", "");
    const auto blue = boost::make_shared<Material>("blue", "");
    InstanceGeometry instance(boost::make_shared<Mesh>("m", ""), red);
    EXPECT_EQ(instance.toString(), "Instance Geometry for Geometry with ID: m\n");
    instance.setMaterial("other", blue);
    instance.setMaterial("velmoran_material", MaterialPtr());
    EXPECT_THAT(instance.getMaterialMap(), ElementsAre(Pair("velmoran_material", red)));
    instance.setMaterial("velmoran_material", blue);
    EXPECT_THAT(instance.getMaterialList(), ElementsAre(blue));

    instance.setMaterialMap({{"b", red}, {"a", MaterialPtr()}});
    EXPECT_THAT(instance.getMaterialList(), ElementsAre(blue)); // until it is assembled anew
    instance.setMaterial("a", blue);
    EXPECT_THAT(instance.getMaterialList(), ElementsAre(blue, red));
    instance.setGeometry(IGeometryPtr());
    EXPECT_EQ(instance.toString(), "Instance Geometry for Geometry with ID: \n");
}
} // namespace
} // namespace velmoran::scene
