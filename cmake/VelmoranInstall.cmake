include(CMakePackageConfigHelpers)

set(velmoran_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/velmoran_scene)

# Headers that only the libraries' own sources include.
set(velmoran_private_headers
    core/event/Registry.h
    core/event/Subscription.h
    scene/animation/AnimationWalk.h
    scene/animation/ChannelBinding.h
    scene/animation/ChannelNames.h
    scene/animation/ChannelTarget.h
    scene/animation/EvaluatedPose.h
    scene/animation/KeyClock.h
    scene/animation/KeyTimes.h
    scene/animation/KeyInsertion.h
    scene/animation/KeyframeEditing.h
    scene/animation/ListTrack.h
    scene/animation/MatrixKeys.h
    scene/animation/PlaybackPlan.h
    scene/animation/PoseLanes.h
    scene/animation/RevisionStamp.h
    scene/animation/SamplerKeys.h
    scene/deform/Influences.h
    scene/deform/JointFrames.h
    scene/deform/JointPalette.h
    scene/deform/SkinBinding.h
    scene/deform/SkinRefinement.h
    scene/deform/SkinningKernel.h
    scene/deform/WorldMatrices.h
    scene/geometry/CornerValues.h
    scene/geometry/CornerWriter.h
    scene/geometry/DistinctValues.h
    scene/geometry/EdgeTable.h
    scene/geometry/Midpoints.h
    scene/geometry/RefinedValues.h
    scene/geometry/FaceCorners.h
    scene/geometry/NormalSlots.h
    scene/geometry/NormalStorage.h
    scene/geometry/PointLanes.h
    scene/geometry/RoughBoxTest.h
    scene/geometry/StreamCount.h
    scene/geometry/StreamList.h
    scene/geometry/Subdivision.h
    scene/geometry/TriangleBoxTest.h
    scene/geometry/TriangleCorners.h
    scene/geometry/TriangleRayTest.h
    scene/geometry/UnrefinedFaces.h
    scene/geometry/VertexNormals.h
    scene/graph/HandleList.h
    scene/graph/NodeWalk.h
    scene/graph/PoseWriter.h
    scene/graph/RaiseIfHeard.h
    scene/graph/TransformParts.h
    scene/graph/TransformationFolding.h
    scene/graph/TransformationValues.h
    scene/manager/AvatarMorphing.h
    scene/manager/GeometryUsers.h
    scene/manager/IdentifierRegister.h
    scene/manager/JointReplacement.h
    scene/manager/NodeIndex.h
    scene/manager/NodeTable.h
    scene/manager/SceneAttempt.h
    scene/manager/SceneGraphMerger.h
    scene/manager/SceneWorker.h
    scene/manager/StreamUsers.h
    scene/spatial/Bits.h
    scene/spatial/CellSearch.h
    scene/spatial/CellTree.h
    scene/spatial/FlatElements.h
    scene/spatial/Octants.h
    scene/spatial/PickIndex.h
    scene/spatial/PrefetchElement.h)
foreach(short core scene)
    file(GLOB_RECURSE headers CONFIGURE_DEPENDS
        RELATIVE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/${short}/*.h)
    list(REMOVE_ITEM headers ${velmoran_private_headers})
    list(TRANSFORM headers PREPEND ${PROJECT_SOURCE_DIR}/)
    target_sources(velmoran_${short} PUBLIC
        FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${headers})
endforeach()

if(NOT VELMORAN_INSTALL)
    return()
endif()

install(TARGETS velmoran_core velmoran_scene EXPORT velmoran_targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        COMPONENT runtime NAMELINK_COMPONENT development
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/velmoran COMPONENT development)
install(EXPORT velmoran_targets NAMESPACE velmoran:: DESTINATION ${velmoran_package_dir}
    COMPONENT development)

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/velmoran_scene-config.cmake.in
    ${PROJECT_BINARY_DIR}/velmoran_scene-config.cmake
    INSTALL_DESTINATION ${velmoran_package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/velmoran_scene-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/velmoran_scene-config.cmake
    ${PROJECT_BINARY_DIR}/velmoran_scene-config-version.cmake
    DESTINATION ${velmoran_package_dir} COMPONENT development)

# From where the pkg-config files stand to the prefix, so that the package can be moved.
file(RELATIVE_PATH velmoran_pc_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
foreach(short core scene)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/velmoran_${short}.pc.in
        ${PROJECT_BINARY_DIR}/velmoran_${short}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/velmoran_${short}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endforeach()
