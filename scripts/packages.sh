# Debian packages that the build needs; sourced by the other scripts.

library_packages=(g++ cmake ninja-build
    libboost-dev libboost-thread-dev libeigen3-dev)
example_packages=(libpugixml-dev libcli11-dev nlohmann-json3-dev libpng-dev)
package_packages=(dpkg-dev file)
test_packages=(libgtest-dev libgmock-dev pkg-config "${package_packages[@]}")
# Libraries that the benchmarks compare with.
peer_packages=(pkg-config libmeshoptimizer-dev libabsl-dev libopenscenegraph-dev libassimp-dev
    libogre-1.12-dev libcgal-dev libopenmesh-dev libembree-dev libbullet-dev libfcl-dev
    libsigc++-3.0-dev)
