# cmake --install: the shared library (the DLL and its import library on
# Windows), the public headers, kelps2pdf, a CMake package that gives the
# imported target kelumpd64::kelumpd64, and kelumpd64.pc for pkg-config.
include(CMakePackageConfigHelpers)

install(TARGETS kelumpd64 EXPORT kelumpd64Targets RUNTIME DESTINATION bin LIBRARY DESTINATION lib
        ARCHIVE DESTINATION lib)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/include/kelumpd64 DESTINATION include)
install(TARGETS kelps2pdf RUNTIME DESTINATION bin)
if(NOT KEL_WINDOWS)
    set_target_properties(kelps2pdf PROPERTIES INSTALL_RPATH "$ORIGIN/../lib")
endif()

install(EXPORT kelumpd64Targets NAMESPACE kelumpd64:: DESTINATION lib/cmake/kelumpd64)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/kelumpd64Config.cmake.in
                              ${CMAKE_BINARY_DIR}/kelumpd64Config.cmake
                              INSTALL_DESTINATION lib/cmake/kelumpd64)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/kelumpd64ConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/kelumpd64Config.cmake
              ${CMAKE_BINARY_DIR}/kelumpd64ConfigVersion.cmake DESTINATION lib/cmake/kelumpd64)

configure_file(${CMAKE_CURRENT_LIST_DIR}/kelumpd64.pc.in ${CMAKE_BINARY_DIR}/kelumpd64.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/kelumpd64.pc DESTINATION lib/pkgconfig)
