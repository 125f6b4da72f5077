#include "examples/scenetool/PngFile.h"

#include "examples/scenetool/OutputFile.h"
#include "examples/scenetool/SceneLoader.h"
#include "examples/scenetool/Text.h"

#include <png.h>

namespace velmoran::examples
{
namespace
{
/// The bytes of a PNG file.
std::string encode(const Image& image)
{
    png_image header{};
    header.version = PNG_IMAGE_VERSION;
    header.format = PNG_FORMAT_RGB;
    header.width = static_cast<png_uint_32>(image.width);
    header.height = static_cast<png_uint_32>(image.height);
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(header);
    std::string bytes(size, '\0');
    if (png_image_write_to_memory(&header, bytes.data(), &size, 0, image.pixels.data(), 0,
                                  nullptr) == 0)
    {
        throw CommandError(std::string("can't make a PNG picture: ") + header.message);
    }
    bytes.resize(size);
    return bytes;
}
} // namespace

void writePngFile(const Picture& picture, const std::string& fileName, const Console& console)
{
    if (picture.getCount() == 0)
    {
        throw CommandError("can't draw " + fileName + ": there is no triangle to see");
    }
    const Image image = picture.render();
    OutputFile file(fileName);
    file.write(encode(image));
    file.finish();
    file.commit();
    console.out << "Wrote " << fileName << ": " << countText(picture.getCount(), "scene", "scenes")
                << ", " << image.width << " x " << image.height << " pixels\n";
}
} // namespace velmoran::examples
