# pqutils.pc for an absolute CMAKE_INSTALL_LIBDIR and a relative include
# directory: the first written as it is, the second under ${prefix}.
set(PREFIX "${WORK}/prefix")
set(LIBDIR "${WORK}/elsewhere/lib64")
set(INCLUDEDIR "include")
set(VERSION "9.9")
set(DESCRIPTION "check")
include("${WRITER}")
file(READ "${WORK}/elsewhere/lib64/pkgconfig/pqutils.pc" pc)
foreach(expected "prefix=${WORK}/prefix\n" "libdir=${WORK}/elsewhere/lib64\n"
                 "includedir=\${prefix}/include\n" "Version: 9.9\n")
  string(FIND "${pc}" "${expected}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "pqutils.pc lacks '${expected}':\n${pc}")
  endif()
endforeach()
