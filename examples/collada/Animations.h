#pragma once

#include "examples/collada/Sources.h"

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace velmoran::examples::collada
{
/// The animation library of a document: nested animations with their streams,
/// samplers and channels. Warns about channels whose target names nothing and about
/// samplers whose keys can't be played as they are; both are kept.
class Animations
{
public:
    Animations(Document& document, Sources& sources);

    /// The animations that stand directly in the library.
    const std::vector<scene::AnimationPtr>& getAnimations() const;

private:
    scene::AnimationPtr readAnimation(const pugi::xml_node& element);
    scene::SamplerPtr getSampler(const pugi::xml_node& element);
    void checkKeys(const pugi::xml_node& element, const scene::Sampler& sampler);
    void checkTarget(const pugi::xml_node& channel, const std::string& target);
    const char* findFault(const pugi::xml_node& node, const std::string& path);
    bool hasSid(const pugi::xml_node& node, const std::string& sid);

    Document& m_document;
    Sources& m_sources;
    std::vector<scene::AnimationPtr> m_animations;
    std::unordered_map<const void*, scene::SamplerPtr> m_samplers;               ///< by element
    std::unordered_map<const void*, std::unordered_set<std::string>> m_nodeSids; ///< by `<node>`
};
} // namespace velmoran::examples::collada
