# Cross build for 64-bit ARM Linux with Debian's GCC cross compiler
# (g++-aarch64-linux-gnu); what it builds runs under qemu-aarch64 (qemu-user),
# which finds the target's C and C++ runtime under the cross compiler's root.
# Libraries of the target come from Debian multiarch (libgtest-dev:arm64,
# in /usr/lib/aarch64-linux-gnu).
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)

set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)

set(PQUTILS_AARCH64_ROOT /usr/aarch64-linux-gnu)
set(CMAKE_FIND_ROOT_PATH ${PQUTILS_AARCH64_ROOT})
# Programs are the build machine's; libraries, headers and packages are
# searched in the target's root first, then in the system (multiarch
# libraries and header-only packages).
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY BOTH)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE BOTH)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)

set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L ${PQUTILS_AARCH64_ROOT})
