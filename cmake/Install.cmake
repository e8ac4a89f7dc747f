# What `cmake --install` puts under the prefix, the CMake package and the pkg-config file
# that find it there, and the Debian package of the same tree (cpack -G DEB):
#   include/quelvar/...                  the headers at their source paths
#   lib/libquelvar.so.<version>          the shared library (SONAME libquelvar.so.<major>)
#   lib/libquelvar.a, lib/libqv*.a       the static libraries
#   lib/quelvar/libquelvar-module.so     the module that hosts load with dlopen
#   lib/cmake/Quelvar/                   find_package(Quelvar CONFIG)
#   lib/pkgconfig/quelvar.pc             pkg-config --cflags --libs quelvar
#   bin/                                 gallery, formview, calc, gdi-replay
# The version of all of them is the project's VERSION.
include(CMakePackageConfigHelpers)

set(QV_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Quelvar)
set(QV_STATIC_TARGETS qvcore qvgraphics qvsystem qvbackend qvcontrols qvplatform quelvar)

# Imported names: Quelvar::quelvar is the shared library, Quelvar::quelvar_static the
# static package (Quelvar::qv* its framework layers), Quelvar::module the dlopen module.
set_target_properties(quelvar PROPERTIES EXPORT_NAME quelvar_static)
set_target_properties(quelvar_shared PROPERTIES EXPORT_NAME quelvar)
set_target_properties(quelvar_module PROPERTIES EXPORT_NAME module)

# The shared library and the module need nothing but the C++ runtime from a program; the
# static libraries bring FreeType, fontconfig, libpng and X11 along, so they form an export
# set of their own that the package loads on request (COMPONENTS static).
install(TARGETS quelvar_shared EXPORT QuelvarTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS quelvar_module EXPORT QuelvarTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/quelvar)
install(TARGETS ${QV_STATIC_TARGETS} EXPORT QuelvarStaticTargets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    FILE_SET HEADERS DESTINATION ${QV_INSTALL_INCLUDEDIR})
install(TARGETS gallery formview calc gdi-replay RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

install(EXPORT QuelvarTargets NAMESPACE Quelvar:: DESTINATION ${QV_CMAKE_DIR})
install(EXPORT QuelvarStaticTargets NAMESPACE Quelvar:: DESTINATION ${QV_CMAKE_DIR})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/QuelvarConfig.cmake.in
    ${PROJECT_BINARY_DIR}/QuelvarConfig.cmake INSTALL_DESTINATION ${QV_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QuelvarConfigVersion.cmake
    VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/QuelvarConfig.cmake
    ${PROJECT_BINARY_DIR}/QuelvarConfigVersion.cmake DESTINATION ${QV_CMAKE_DIR})

# quelvar.pc finds the prefix from its own place, so the tree works wherever it is unpacked.
file(RELATIVE_PATH QV_PC_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${CMAKE_CURRENT_LIST_DIR}/quelvar.pc.in ${PROJECT_BINARY_DIR}/quelvar.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/quelvar.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# cpack -G DEB: one package with everything above under /usr; its run-time dependencies
# come from dpkg-shlibdeps.
set(CPACK_PACKAGE_NAME quelvar)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Instrument and indicator components for desktop applications")
set(CPACK_PACKAGE_CONTACT "Quelvar developers <quelvar@localhost>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
include(CPack)
