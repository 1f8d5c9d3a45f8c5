# `cmake --install <build> --component sdk` installs what a plug-in developer builds and tests with:
#   include/scribo/              binding layer, host-function tables, record layouts, entry points, text layer
#   include/scribo/util/         notation utilities
#   include/scribo/platform/     the CoreFoundation, window-system and keyboard stand-ins (not on macOS)
#   lib/libscribo_*.a            the static libraries; libscribo_entry.a holds `main` and the entry points
#   lib/cmake/ScriboPDK/         find_package(ScriboPDK): ScriboPDK::sdk, scribopdk_add_plugin(),
#                                scribopdk_add_plugin_test()
#   lib/pkgconfig/scribopdk.pc   the same flags for pkg-config users, wherever the prefix is moved
#   bin/scribo-host, lib/scribo/NotationEngine.bundle
#                                the reference host, to run and test plug-ins in
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(sdk_components scribo_binding scribo_text scribo_util)
if(TARGET scribo_platform)
  list(APPEND sdk_components scribo_platform)
endif()
# Libraries the components link privately still have to travel with them.
set(sdk_private_parts)
if(TARGET scribo_platform_base)
  list(APPEND sdk_private_parts scribo_platform_base)
endif()

add_library(scribo_sdk INTERFACE)
target_link_libraries(scribo_sdk INTERFACE ${sdk_components})
set_target_properties(scribo_sdk PROPERTIES EXPORT_NAME sdk)
set_target_properties(scribo_entry PROPERTIES EXPORT_NAME entry)

install(TARGETS scribo_sdk ${sdk_components} ${sdk_private_parts} scribo_entry
  EXPORT ScriboPDKTargets COMPONENT sdk
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})

# The reference host beside the SDK. scribo-host links the engine image, which it finds inside
# the installed bundle wherever the prefix is.
if(TARGET scribo-host)
  set(engine_bundle ${CMAKE_INSTALL_LIBDIR}/scribo/NotationEngine.bundle)
  get_target_property(engine_build_bundle scribo_engine SCRIBO_BUNDLE_DIR)
  install(TARGETS scribo_engine LIBRARY DESTINATION ${engine_bundle}/Contents/MacOS COMPONENT sdk)
  install(FILES ${engine_build_bundle}/Contents/Info.plist DESTINATION ${engine_bundle}/Contents
    COMPONENT sdk)
  install(DIRECTORY DESTINATION ${engine_bundle}/Contents/Resources COMPONENT sdk)
  file(RELATIVE_PATH engine_from_bin /prefix/${CMAKE_INSTALL_BINDIR}
    /prefix/${engine_bundle}/Contents/MacOS)
  set_target_properties(scribo-host PROPERTIES INSTALL_RPATH "$ORIGIN/${engine_from_bin}")
  install(TARGETS scribo-host EXPORT ScriboPDKTargets COMPONENT sdk
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

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
  ${PROJECT_SOURCE_DIR}/cmake/RunPluginTest.cmake
  DESTINATION ${cmakedir} COMPONENT sdk)

# pkg-config: the prefix is found from the .pc file's own place, and the flags carry everything
# a plug-in links statically, in an order-free group.
file(RELATIVE_PATH SCRIBO_PC_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" SCRIBO_PC_PREFIX ${SCRIBO_PC_PREFIX})
set(SCRIBO_PC_LIBS)
foreach(lib scribo_entry ${sdk_components} ${sdk_private_parts})
  string(REGEX REPLACE "^scribo_" "-lscribo_" lib ${lib})
  string(APPEND SCRIBO_PC_LIBS " ${lib}")
endforeach()
configure_file(${PROJECT_SOURCE_DIR}/cmake/scribopdk.pc.in ${CMAKE_BINARY_DIR}/scribopdk.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/scribopdk.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT sdk)
