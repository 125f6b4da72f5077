#include "scene/material/Material.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/MaterialParameter.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <sstream>

using namespace velmoran::scene;

namespace
{
// Parameters: a colour, an empty handle and a second parameter of the same name.
Material makeMaterial()
{
    Material material("m", "e");
    material.setTechnique("glossy");
    material.addMaterialParameter(boost::make_shared<MaterialParameter>("tint", "color", "1 0 0"));
    material.addMaterialParameter(MaterialParameterPtr());
    material.addMaterialParameter(boost::make_shared<MaterialParameter>("tint", "texture", "img"));
    return material;
}
} // namespace

TEST(EffectAndImage, AreMadeWithTheFileNameBeforeTheName)
{
    const Effect effect("e", "f.cgfx", "n");
    EXPECT_EQ(effect.getFilename(), "f.cgfx");
    EXPECT_EQ(effect.getName(), "n");
    const Image image("i", "f.png", "n");
    EXPECT_EQ(image.getFilename(), "f.png");
    EXPECT_EQ(image.getName(), "n");
}

TEST(Material, FindsParametersByPositionAndByTheFirstMatchingName)
{
    const Material material = makeMaterial();
    ASSERT_EQ(material.getParametersCount(), 3u);
    EXPECT_EQ(material.getParameterByName("tint"), material.getParameterAt(0));
    EXPECT_FALSE(material.getParameterByName("Tint"));
    EXPECT_FALSE(material.getParameterAt(1));
    EXPECT_EQ(material.getParameterAt(2)->getType(), "texture");
    EXPECT_FALSE(material.getParameterAt(3));
}

TEST(Material, CopiesShareParametersAndOnlyCloneLosesTheTechnique)
{
    const Material material = makeMaterial();
    EXPECT_EQ(Material(material).getTechnique(), "glossy");

    const Material clone = material.clone();
    EXPECT_EQ(clone.getTechnique(), "");
    EXPECT_EQ(clone.getMaterialID() + clone.getEffectID(), "me");
    clone.getParameterAt(0)->setValue("0 1 0");
    EXPECT_EQ(material.getParameterAt(0)->getValue(), "0 1 0");
}

TEST(Material, TextsSkipEmptyParameters)
{
    const Material material = makeMaterial();
    EXPECT_EQ(material.toString(), "Material ID: m, Effect ID: e\n"
                                   " Param 0: tint, color, 1 0 0\n"
                                   " Param 2: tint, texture, img\n");
    EXPECT_EQ(Material("m", "").toString(), "Material ID: m, Effect ID: \n");

    std::ostringstream written;
    written << *material.getParameterAt(0) << material;
    std::ostringstream expected;
    expected << "  Parameter Name: tint, Value: 1 0 0\n"
             << " Material ID: m, effect ID: e\n  Material Parameters: \n";
    for (const MaterialParameterPtr& parameter : material.getMaterialParameters())
    {
        expected << static_cast<void*>(parameter.get());
    }
    EXPECT_EQ(written.str(), expected.str());
}
