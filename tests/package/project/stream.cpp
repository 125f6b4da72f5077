// Uses nothing of the core library itself, which then comes along with the other one.

#include "scene/geometry/Stream.h"

int main()
{
    velmoran::scene::Stream stream("positions", 3, false);
    return stream.insertValues({1.0F, 2.0F, 3.0F, 1.0F, 2.0F, 3.0F}) == std::vector<int>{0, 0} ? 0
                                                                                               : 1;
}
