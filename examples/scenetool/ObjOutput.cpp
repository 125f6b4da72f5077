#include "examples/scenetool/ObjOutput.h"

#include "examples/scenetool/ObjWriter.h"
#include "examples/scenetool/Text.h"

namespace velmoran::examples
{
void writeObjFile(const scene::SceneManagerPtr& scene, const std::string& fileName,
                  const Console& console)
{
    const ObjResult result = writeObj(scene, fileName);
    console.out << "Wrote " << fileName << ": " << countText(result.points, "point", "points")
                << ", " << countText(result.triangles, "triangle", "triangles")
                << (result.polygons > 0 ? ", " + countText(result.polygons, "polygon", "polygons")
                                        : "")
                << "; materials in " << result.materialFile << '\n';
    if (result.skippedFaces > 0)
    {
        warn(countText(result.skippedFaces, "face", "faces") + " with broken indices left out",
             console);
    }
    if (result.skippedPrimitives > 0)
    {
        warn(countText(result.skippedPrimitives, "primitive", "primitives") +
                 " without faces left out",
             console);
    }
    if (result.unposedSkins > 0)
    {
        warn(countText(result.unposedSkins, "skin", "skins") +
                 " without all joints written as bound",
             console);
    }
}
} // namespace velmoran::examples
