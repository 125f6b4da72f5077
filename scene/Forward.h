#pragma once

// Forward declarations of the scene library's classes and the handles that
// share them. Headers include this; sources include the classes.

#include <boost/shared_ptr.hpp>

namespace velmoran::scene
{
// graph
class ISceneContext;
class Node;
class ITransformation;
class LayerManager;
class Camera;
class CameraInstance;
class Light;
using ISceneContextPtr = boost::shared_ptr<ISceneContext>;
using NodePtr = boost::shared_ptr<Node>;
using ITransformationPtr = boost::shared_ptr<ITransformation>;
using LayerManagerPtr = boost::shared_ptr<LayerManager>;
using CameraPtr = boost::shared_ptr<Camera>;
using CameraInstancePtr = boost::shared_ptr<CameraInstance>;
using LightPtr = boost::shared_ptr<Light>;

// geometry
class Stream;
class StreamMapping;
struct VertexElement;
class Vertex;
class IGeometry;
class Mesh;
class IMeshPrimitive;
class IPrimitive;
class Triangle;
class TriangleMeshPrimitive;
class Polygon;
class PolygonMeshPrimitive;
class ConvexMesh;
class GeometryManager;
class InstanceGeometry;
using StreamPtr = boost::shared_ptr<Stream>;
using VertexElementPtr = boost::shared_ptr<VertexElement>;
using VertexPtr = boost::shared_ptr<Vertex>;
using IGeometryPtr = boost::shared_ptr<IGeometry>;
using MeshPtr = boost::shared_ptr<Mesh>;
using IMeshPrimitivePtr = boost::shared_ptr<IMeshPrimitive>;
using IPrimitivePtr = boost::shared_ptr<IPrimitive>;
using TrianglePtr = boost::shared_ptr<Triangle>;
using TriangleMeshPrimitivePtr = boost::shared_ptr<TriangleMeshPrimitive>;
using PolygonPtr = boost::shared_ptr<Polygon>;
using PolygonMeshPrimitivePtr = boost::shared_ptr<PolygonMeshPrimitive>;
using ConvexMeshPtr = boost::shared_ptr<ConvexMesh>;
using GeometryManagerPtr = boost::shared_ptr<GeometryManager>;
using InstanceGeometryPtr = boost::shared_ptr<InstanceGeometry>;

// material
class Material;
class MaterialParameter;
class Effect;
class Image;
class Render;
using MaterialPtr = boost::shared_ptr<Material>;
using MaterialParameterPtr = boost::shared_ptr<MaterialParameter>;
using EffectPtr = boost::shared_ptr<Effect>;
using ImagePtr = boost::shared_ptr<Image>;
using RenderPtr = boost::shared_ptr<Render>;

// animation
class Animation;
class Sampler;
class AnimationManager;
class Evaluator;
using AnimationPtr = boost::shared_ptr<Animation>;
using SamplerPtr = boost::shared_ptr<Sampler>;
using AnimationManagerPtr = boost::shared_ptr<AnimationManager>;
using EvaluatorPtr = boost::shared_ptr<Evaluator>;

// deform
class Controller;
class Skin;
class Morph;
class InstanceController;
using ControllerPtr = boost::shared_ptr<Controller>;
using SkinPtr = boost::shared_ptr<Skin>;
using MorphPtr = boost::shared_ptr<Morph>;
using InstanceControllerPtr = boost::shared_ptr<InstanceController>;

// manager
class SceneManager;
class ISceneController;
using SceneManagerPtr = boost::shared_ptr<SceneManager>;
using ISceneControllerPtr = boost::shared_ptr<ISceneController>;

// spatial
class Ray;
class OctreeNode;
class Octree;
using RayPtr = boost::shared_ptr<Ray>;
using OctreeNodePtr = boost::shared_ptr<OctreeNode>;
using OctreePtr = boost::shared_ptr<Octree>;

// physics
class IPhysicsShape;
class PhysicsMaterial;
class PhysicsShape;
class PhysicsRigidBody;
class PhysicsAttachment;
class PhysicsRigidConstraint;
class PhysicsModel;
class PhysicsInstanceRigidBody;
class PhysicsInstanceRigidConstraint;
class PhysicsInstanceModel;
class PhysicsScene;
using IPhysicsShapePtr = boost::shared_ptr<IPhysicsShape>;
using PhysicsMaterialPtr = boost::shared_ptr<PhysicsMaterial>;
using PhysicsShapePtr = boost::shared_ptr<PhysicsShape>;
using PhysicsRigidBodyPtr = boost::shared_ptr<PhysicsRigidBody>;
using PhysicsAttachmentPtr = boost::shared_ptr<PhysicsAttachment>;
using PhysicsRigidConstraintPtr = boost::shared_ptr<PhysicsRigidConstraint>;
using PhysicsModelPtr = boost::shared_ptr<PhysicsModel>;
using PhysicsInstanceRigidBodyPtr = boost::shared_ptr<PhysicsInstanceRigidBody>;
using PhysicsInstanceRigidConstraintPtr = boost::shared_ptr<PhysicsInstanceRigidConstraint>;
using PhysicsInstanceModelPtr = boost::shared_ptr<PhysicsInstanceModel>;
using PhysicsScenePtr = boost::shared_ptr<PhysicsScene>;
} // namespace velmoran::scene
