#include "tests/scene/geometry/GeometryBuilders.h"

#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/material/Material.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace velmoran::scene
{
namespace
{
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

/// A mesh with a primitive that has the material symbol `symbol`.
MeshPtr makeMesh(const std::string& id, const std::string& symbol = "s")
{
    const MeshPtr mesh = boost::make_shared<Mesh>(id, "");
    const auto primitive =
        boost::make_shared<TriangleMeshPrimitive>(mesh, std::vector<StreamMapping>());
    primitive->setMaterialSymbol(symbol);
    mesh->addPrimitive(primitive);
    return mesh;
}

GeometryManagerPtr makeLibrary(const std::vector<MeshPtr>& meshes)
{
    const auto library =
        boost::make_shared<GeometryManager>(boost::shared_ptr<core::event::EventManager>());
    for (const MeshPtr& mesh : meshes)
    {
        library->addGeometry(mesh);
    }
    return library;
}

/// The messages that were logged since this was made, without their time stamps.
class LogReader
{
public:
    LogReader() : m_file("GeometryManager.log", std::ios::ate) {}

    std::vector<std::string> read()
    {
        std::vector<std::string> messages;
        for (std::string line; std::getline(m_file, line);)
        {
            messages.push_back(line.substr(line.find('[')));
        }
        return messages;
    }

private:
    std::ifstream m_file;
};

TEST(GeometryManager, KeepsTheFirstGeometryOfAnID)
{
    const MeshPtr a = makeMesh("a");
    const MeshPtr b = makeMesh("b");
    GeometryManager library((core::event::EventManagerPtr()));
    EXPECT_TRUE(library.addGeometry(b));
    EXPECT_TRUE(library.addGeometry(a));
    const MeshPtr second = makeMesh("a");
    EXPECT_FALSE(library.addGeometry(second));
    EXPECT_FALSE(library.addGeometry(IGeometryPtr()));
    second->clearPrimitives();

    EXPECT_THAT(library.getIDs(), ElementsAre("a", "b"));
    std::vector<IGeometryPtr> all = {second};
    library.getGeometries(all);
    EXPECT_THAT(all, ElementsAre(second, a, b));
    EXPECT_EQ(library.getGeometryType("a"), IGeometry::MESH);
    EXPECT_EQ(library.getGeometryType("?"), IGeometry::INVALID);
    EXPECT_FALSE(library.getGeometry("?"));
    for (const MeshPtr& mesh : {a, b}) // held here, so the library does not do it
    {
        mesh->clearPrimitives();
    }
    EXPECT_EQ(IGeometry::typeToString(static_cast<IGeometry::Type>(4)), "Invalid2");
}

TEST(GeometryManager, MergeRenamesOrDiscardsWhatClashes)
{
    struct Row
    {
        bool discardRepeated;
        std::vector<std::string> ids;
        std::vector<std::string> log;
    };
    for (const Row& row :
         {Row{false,
              {"a", "a__renamed__", "b"},
              {"[INFO] Found repeated geometry ID. Renamed geometry a to a__renamed__",
               "[INFO] Added 2 new geometries"}},
          Row{true,
              {"a", "b"},
              {"[INFO] Found repeated geometry ID and discarded new one: a",
               "[INFO] Added 1 new geometries"}}})
    {
        const auto library = makeLibrary({makeMesh("a")});
        const auto other = makeLibrary({makeMesh("a"), makeMesh("b")});
        LogReader log;
        const auto renamed = library->mergeGeometries(other, row.discardRepeated);
        EXPECT_EQ(renamed.size(), row.discardRepeated ? 0u : 1u);
        EXPECT_EQ(library->getIDs(), row.ids);
        EXPECT_EQ(library->getGeometry("b"), other->getGeometry("b"));
        EXPECT_EQ(log.read(), row.log);
    }
}

TEST(GeometryManager, MergeDropsAClonesWhoseNewIDIsTaken)
{
    const auto library = makeLibrary({makeMesh("a")});
    const auto other = makeLibrary({makeMesh("a")});
    library->mergeGeometries(other, false);
    const IGeometryPtr firstClone = library->getGeometry("a__renamed__");
    LogReader log;
    EXPECT_THAT(library->mergeGeometries(other, false), ElementsAre(Pair("a", "a__renamed__")));
    EXPECT_EQ(library->getGeometry("a__renamed__"), firstClone);
    EXPECT_EQ(log.read().back(), "[INFO] Added 1 new geometries");

    // The incoming original of that ID goes before the clone.
    const auto both = makeLibrary({makeMesh("a"), makeMesh("a__renamed__")});
    const auto fresh = makeLibrary({makeMesh("a")});
    fresh->mergeGeometries(both, false);
    EXPECT_EQ(fresh->getGeometry("a__renamed__"), both->getGeometry("a__renamed__"));

    LogReader quiet;
    EXPECT_THAT(library->mergeGeometries(GeometryManagerPtr(), false), IsEmpty());
    EXPECT_THAT(library->mergeGeometries(library, false), IsEmpty());
    EXPECT_THAT(quiet.read(), IsEmpty());
    EXPECT_EQ(library->getCount(), 2u);
}

TEST(GeometryManager, ReplacingGivesTheIDAndAnswersTheSymbols)
{
    const auto library = makeLibrary({makeMesh("a")});
    const boost::weak_ptr<IGeometry> old = library->getGeometry("a");
    const MeshPtr fresh = makeMesh("x", "red");
    EXPECT_THAT(library->replaceGeometry("?", fresh), IsEmpty());
    EXPECT_THAT(library->replaceGeometry("a", IGeometryPtr()), IsEmpty());
    EXPECT_EQ(fresh->getID(), "x");

    EXPECT_THAT(library->replaceGeometry("a", fresh), ElementsAre("red"));
    EXPECT_EQ(library->getGeometry("a"), fresh);
    EXPECT_EQ(fresh->getID(), "a");
    EXPECT_TRUE(old.expired());
    EXPECT_THAT(library->replaceGeometry("a", fresh), ElementsAre("red"));
    EXPECT_EQ(fresh->getPrimitiveCount(), 1u);

    fresh->setType(IGeometry::CONVEX_MESH);
    EXPECT_THAT(library->replaceGeometry("a", makeMesh("y", "blue")), IsEmpty());
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
    // A primitive of "b" that stands in the list of "a" only.
    mesh("a")->addPrimitive(
        boost::make_shared<TriangleMeshPrimitive>(mesh("b"), std::vector<StreamMapping>()));

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
    const auto mesh = boost::make_shared<Mesh>("m", "");
    InstanceGeometry instance(mesh, red);
    EXPECT_EQ(instance.toString(), "Instance Geometry for Geometry with ID: m\n");
    instance.setMaterial("other", blue);
    EXPECT_THAT(instance.getMaterialMap(), ElementsAre(Pair("velmoran_material", red)));
    instance.setMaterial("velmoran_material", MaterialPtr());
    EXPECT_THAT(instance.getMaterialList(), ElementsAre(red));
    instance.setMaterial("velmoran_material", blue);
    EXPECT_THAT(instance.getMaterialList(), ElementsAre(blue));

    instance.setMaterialMap({{"b", red}, {"a", MaterialPtr()}});
    EXPECT_THAT(instance.getMaterialList(), ElementsAre(blue)); // until it is assembled anew
    instance.setMaterial("a", blue);
    EXPECT_THAT(instance.getMaterialList(), ElementsAre(blue, red));
    EXPECT_FALSE(instance.getMaterial("velmoran_material"));
    instance.setGeometry(IGeometryPtr());
    EXPECT_EQ(instance.toString(), "Instance Geometry for Geometry with ID: \n");
}
} // namespace
} // namespace velmoran::scene
