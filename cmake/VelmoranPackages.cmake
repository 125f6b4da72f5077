# Debian packages: `cpack` in a build folder makes one of what programs run with and one of
# what they are built with.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "The velmoran_scene developers <developers@velmoran.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON) # so that packages of programs depend on ours
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=") # or on a later one of the same soname
# Libraries that the package itself brings.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
    ${PROJECT_BINARY_DIR}/core ${PROJECT_BINARY_DIR}/scene)

set(runtime_name libvelmoran-scene${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime_name})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
    "This package has the shared libraries.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libvelmoran-scene-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${runtime_name} (= ${PROJECT_VERSION}), \
libboost-dev, libboost-thread-dev, libeigen3-dev (>= 3.4)")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "This package has the headers and what CMake and pkg-config find the libraries with.")

include(CPack)
