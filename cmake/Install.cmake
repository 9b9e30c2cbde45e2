include(CMakePackageConfigHelpers)

install(TARGETS lumatrex EXPORT LumatrexTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# Public headers keep their folder layout under include/lumatrex, next to the
# umbrella header lumatrex.h.
install(FILES lumatrex.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/lumatrex)
foreach(folder IN ITEMS platform geometry persistence shapes library canvas dxf ruler inspector)
  install(DIRECTORY ${folder}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/lumatrex/${folder}
    FILES_MATCHING PATTERN "*.h")
endforeach()

install(EXPORT LumatrexTargets NAMESPACE Lumatrex:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Lumatrex)
configure_package_config_file(cmake/LumatrexConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/LumatrexConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Lumatrex)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/LumatrexConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/LumatrexConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/LumatrexConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Lumatrex)
