#pragma once

#include "scene/Forward.h"

#include <Eigen/Core>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace velmoran::examples
{
using Json = nlohmann::ordered_json;

/// What a scene holds, as JSON: "file", "up_axis", "unit_meter", "counts", "ids",
/// "visual_scene" (the root's ID), "geometries", "totals", "controllers", "node_tree"
/// and "rest_world_matrices" (four rows of four). See `collectGeometries` and
/// `countPhysics`. A scene whose animations have channels also has "animation" (see
/// `collectAnimation`).
///
/// The root is not listed, the nodes below it have no parent. Empty names and SIDs are
/// null. The effect and the material that every new scene holds are left out.
Json collectFacts(const scene::SceneManagerPtr& scene, const std::string& fileName);

/// The scene's effects and materials without those that its constructor made.
std::vector<scene::EffectPtr> ownEffects(const scene::SceneManagerPtr& scene);
std::vector<scene::MaterialPtr> ownMaterials(const scene::SceneManagerPtr& scene);

/// "X_UP", "Y_UP" or "Z_UP".
std::string upAxisText(const scene::SceneManagerPtr& scene);

/// The name that documents have for a kind of `ITransformation`.
const char* transformationName(int type);

/// The whole tuples that a stream holds.
std::size_t tupleCount(const scene::StreamPtr& stream);

/// Null for an empty text.
Json textOrNull(const std::string& text);

/// Four rows of four.
Json matrixRows(const Eigen::Matrix4f& matrix);
} // namespace velmoran::examples
