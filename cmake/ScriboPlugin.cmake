# scribopdk_add_plugin(<target> NAME <BundleName> IDENTIFIER <id> SOURCES <src>...
#                      [RESOURCES <dir>...] [DEVELOPMENT_REGION <lang>] [OUTPUT_DIR <dir>] [LIBS <lib>...])
#
# Builds a plug-in bundle <OUTPUT_DIR>/<BundleName>.bundle from sources that define the six
# ScriboExtension… entry points (with C linkage and default visibility) and their Ext_ aliases:
# the SDK (binding, text, utilities and, off macOS, the platform stand-in) and the bundle's `main`
# are linked in, everything is compiled with hidden visibility, and the dynamic symbol table is
# limited to the entry points, their aliases, `main` and the SDK's diagnostic counters.
# PROBE builds a test or benchmark image instead: everything declared with default visibility
# stays exported (probe functions a test calls by name), and no entry points are required.
set(SCRIBO_PLUGIN_EXPORTS ${CMAKE_CURRENT_LIST_DIR}/ScriboPlugin.exports)

function(scribopdk_add_plugin target)
  cmake_parse_arguments(P "PROBE" "NAME;IDENTIFIER;DEVELOPMENT_REGION;OUTPUT_DIR" "SOURCES;RESOURCES;LIBS" ${ARGN})
  if(NOT P_NAME OR NOT P_IDENTIFIER OR NOT P_SOURCES)
    message(FATAL_ERROR "scribopdk_add_plugin needs NAME, IDENTIFIER and SOURCES")
  endif()
  if(NOT P_DEVELOPMENT_REGION)
    set(P_DEVELOPMENT_REGION en)
  endif()
  if(NOT P_OUTPUT_DIR)
    set(P_OUTPUT_DIR ${CMAKE_BINARY_DIR})
  endif()
  if(TARGET ScriboPDK::sdk)
    set(sdk ScriboPDK::sdk)
    set(entry ScriboPDK::bundle_main)
  else()
    set(sdk scribo_sdk)
    set(entry scribo_bundle_main)
  endif()
  add_library(${target} MODULE ${P_SOURCES} $<TARGET_OBJECTS:${entry}>)
  target_link_libraries(${target} PRIVATE ${sdk} ${P_LIBS})
  set_target_properties(${target} PROPERTIES CXX_STANDARD 20 CXX_STANDARD_REQUIRED ON POSITION_INDEPENDENT_CODE ON)
  target_link_options(${target} PRIVATE -Wl,--no-undefined)
  if(NOT P_PROBE)
    target_link_options(${target} PRIVATE -Wl,--version-script=${SCRIBO_PLUGIN_EXPORTS})
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${SCRIBO_PLUGIN_EXPORTS})
  endif()
  scribo_bundle(TARGET ${target} NAME ${P_NAME} IDENTIFIER ${P_IDENTIFIER}
                DEVELOPMENT_REGION ${P_DEVELOPMENT_REGION} OUTPUT_DIR ${P_OUTPUT_DIR} RESOURCES ${P_RESOURCES})
endfunction()
