# Writes pqutils.pc into LIBDIR/pkgconfig of an installation (under DESTDIR).
# Run at install time, when the prefix is known:
#   PREFIX       the install prefix
#   LIBDIR       the library directory, absolute or relative to PREFIX
#   INCLUDEDIR   the header directory, absolute or relative to PREFIX
#   VERSION, DESCRIPTION, TEMPLATE (pqutils.pc.in)
# An absolute directory is written as it is; a relative one under ${prefix}.
foreach(dir LIBDIR INCLUDEDIR)
  if(IS_ABSOLUTE "${${dir}}")
    set(PC_${dir} "${${dir}}")
    set(full_${dir} "${${dir}}")
  else()
    set(PC_${dir} "\${prefix}/${${dir}}")
    set(full_${dir} "${PREFIX}/${${dir}}")
  endif()
endforeach()
set(PC_PREFIX "${PREFIX}")
set(PC_VERSION "${VERSION}")
set(PC_DESCRIPTION "${DESCRIPTION}")
set(pc_file "$ENV{DESTDIR}${full_LIBDIR}/pkgconfig/pqutils.pc")
configure_file("${TEMPLATE}" "${pc_file}" @ONLY)
message(STATUS "Installing: ${pc_file}")
