# `cmake --install <build> --component sdk` installs what a plug-in developer builds against:
#   include/scribo/              binding layer, host-function tables, record layouts, text layer
#   include/scribo/util/         notation utilities
#   include/scribo/platform/     the CoreFoundation, window-system and keyboard stand-ins (not on macOS)
#   lib/libscribo_*.a            the static libraries; libscribo_entry.a holds `main` and the entry points
#   lib/cmake/ScriboPDK/         find_package(ScriboPDK): ScriboPDK::sdk, scribopdk_add_plugin()
#   lib/pkgconfig/scribopdk.pc   the same for pkg-config users
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(sdk_components scribo_binding scribo_text scribo_util)
if(TARGET scribo_platform)
  list(APPEND sdk_components scribo_platform)
endif()
# Libraries the components link privately still have to travel with them.
set(sdk_private_parts)
if(TARGET scribo_strings_file)
  list(APPEND sdk_private_parts scribo_strings_file)
endif()

add_library(scribo_sdk INTERFACE)
target_link_libraries(scribo_sdk INTERFACE ${sdk_components})
set_target_properties(scribo_sdk PROPERTIES EXPORT_NAME sdk)
set_target_properties(scribo_entry PROPERTIES EXPORT_NAME entry)

install(TARGETS scribo_sdk ${sdk_components} ${sdk_private_parts} scribo_entry
  EXPORT ScriboPDKTargets COMPONENT sdk
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})

set(inc ${CMAKE_INSTALL_INCLUDEDIR}/scribo)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/Source/ DESTINATION ${inc} COMPONENT sdk
  FILES_MATCHING PATTERN "*.h" PATTERN "*.def")
install(DIRECTORY ${PROJECT_SOURCE_DIR}/LIB/ DESTINATION ${inc} COMPONENT sdk FILES_MATCHING PATTERN "*.h")
install(DIRECTORY ${PROJECT_SOURCE_DIR}/util/ DESTINATION ${inc}/util COMPONENT sdk FILES_MATCHING PATTERN "*.h")
if(TARGET scribo_platform)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/platform/include/ DESTINATION ${inc}/platform COMPONENT sdk)
endif()

set(cmakedir ${CMAKE_INSTALL_LIBDIR}/cmake/ScriboPDK)
install(EXPORT ScriboPDKTargets NAMESPACE ScriboPDK:: DESTINATION ${cmakedir} COMPONENT sdk)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/ScriboPDKConfig.cmake.in
  ${CMAKE_BINARY_DIR}/ScriboPDKConfig.cmake INSTALL_DESTINATION ${cmakedir})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/ScriboPDKConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/ScriboPDKConfig.cmake ${CMAKE_BINARY_DIR}/ScriboPDKConfigVersion.cmake
  ${PROJECT_SOURCE_DIR}/cmake/ScriboBundle.cmake ${PROJECT_SOURCE_DIR}/cmake/Info.plist.in
  ${PROJECT_SOURCE_DIR}/cmake/ScriboPlugin.cmake ${PROJECT_SOURCE_DIR}/cmake/ScriboPlugin.exports
  DESTINATION ${cmakedir} COMPONENT sdk)

configure_file(${PROJECT_SOURCE_DIR}/cmake/scribopdk.pc.in ${CMAKE_BINARY_DIR}/scribopdk.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/scribopdk.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT sdk)
