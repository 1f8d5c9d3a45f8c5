# scribo_bundle(TARGET <module target> NAME <Name> IDENTIFIER <id>
#               [DEVELOPMENT_REGION <lang>] [OUTPUT_DIR <dir>] [VERSION <x.y.z>] [RESOURCES <dir>...])
#
# Turns a MODULE library target into <OUTPUT_DIR>/<Name>.bundle the way the host expects it:
#   Contents/Info.plist          identifier, executable and development region
#   Contents/MacOS/<Name>        the shared object, no prefix, no suffix
#   Contents/Resources/...       the contents of each RESOURCES directory, copied after every build
# The bundle directory is recorded in the target property SCRIBO_BUNDLE_DIR.
set(SCRIBO_BUNDLE_TEMPLATE_DIR ${CMAKE_CURRENT_LIST_DIR})

function(scribo_bundle)
  cmake_parse_arguments(B "" "TARGET;NAME;IDENTIFIER;DEVELOPMENT_REGION;OUTPUT_DIR;VERSION" "RESOURCES" ${ARGN})
  if(NOT B_TARGET OR NOT B_NAME OR NOT B_IDENTIFIER)
    message(FATAL_ERROR "scribo_bundle needs TARGET, NAME and IDENTIFIER")
  endif()
  if(NOT B_DEVELOPMENT_REGION)
    set(B_DEVELOPMENT_REGION en)
  endif()
  if(NOT B_OUTPUT_DIR)
    set(B_OUTPUT_DIR ${CMAKE_BINARY_DIR})
  endif()
  if(NOT B_VERSION)
    set(B_VERSION ${PROJECT_VERSION})
  endif()
  set(bundle ${B_OUTPUT_DIR}/${B_NAME}.bundle)
  set_target_properties(${B_TARGET} PROPERTIES
    PREFIX "" SUFFIX "" OUTPUT_NAME ${B_NAME}
    LIBRARY_OUTPUT_DIRECTORY ${bundle}/Contents/MacOS
    C_VISIBILITY_PRESET hidden CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
    SCRIBO_BUNDLE_DIR ${bundle})
  set(BUNDLE_NAME ${B_NAME})
  set(BUNDLE_IDENTIFIER ${B_IDENTIFIER})
  set(BUNDLE_REGION ${B_DEVELOPMENT_REGION})
  set(BUNDLE_VERSION ${B_VERSION})
  configure_file(${SCRIBO_BUNDLE_TEMPLATE_DIR}/Info.plist.in ${bundle}/Contents/Info.plist @ONLY)
  file(MAKE_DIRECTORY ${bundle}/Contents/Resources)
  foreach(res IN LISTS B_RESOURCES)
    add_custom_command(TARGET ${B_TARGET} POST_BUILD
      COMMAND ${CMAKE_COMMAND} -E copy_directory ${res} ${bundle}/Contents/Resources
      COMMENT "Copying resources into ${B_NAME}.bundle")
  endforeach()
endfunction()
