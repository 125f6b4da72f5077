#include "examples/generator/ExampleDocuments.h"

#include "examples/generator/Avatar.h"
#include "examples/generator/Room.h"
#include "examples/generator/Seesaw.h"

namespace velmoran::generator
{
std::vector<ExampleDocument> makeExampleDocuments(double detail)
{
    const std::vector<Body> bodies = makeBodies(detail);
    std::vector<ExampleDocument> documents{{"room.dae", makeRoomDocument(detail)},
                                           {"seesaw.dae", makeSeesawDocument(detail)}};
    for (std::size_t i = 0; i < bodies.size(); ++i)
    {
        const std::string& name = proportions()[i].name;
        const std::string file = i == 0 ? "avatar.dae" : "avatar_" + name + ".dae";
        documents.push_back({file, makeAvatarDocument(bodies[i], "A person, " + name)});
    }
    return documents;
}
} // namespace velmoran::generator
