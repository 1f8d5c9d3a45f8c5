# scribopdk_add_plugin(<target> NAME <BundleName> IDENTIFIER <id> SOURCES <src>...
#                      [RESOURCES <dir>...] [DEVELOPMENT_REGION <lang>] [OUTPUT_DIR <dir>] [LIBS <lib>...])
#
# Builds a plug-in bundle <OUTPUT_DIR>/<BundleName>.bundle. The sources define the plug-in's menu
# texts, its command and, if it needs one, its initialisation (ScriboExtension.h); the SDK adds
# `main`, the six ScriboExtension… entry points and their Ext_ aliases (sources that define the
# entry points themselves keep their own), and the binding, text, utilities and, off macOS, the
# platform stand-in. Everything is compiled with hidden visibility, and the dynamic symbol table
# is limited to the entry points, their aliases, `main` and the SDK's diagnostic counters.
# PROBE builds a test or benchmark image instead: everything declared with default visibility
# stays exported (probe functions a test calls by name), and no entry points are linked.
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
    set(entry ScriboPDK::entry)
  else()
    set(sdk scribo_sdk)
    set(entry scribo_entry)
  endif()
  add_library(${target} MODULE ${P_SOURCES})
  target_link_libraries(${target} PRIVATE ${entry} ${sdk} ${P_LIBS})
  set_target_properties(${target} PROPERTIES CXX_STANDARD 20 CXX_STANDARD_REQUIRED ON POSITION_INDEPENDENT_CODE ON)
  # Nothing refers to `main` or the entry points inside the bundle: asking for them pulls them
  # out of the SDK's entry library.
  target_link_options(${target} PRIVATE -Wl,--no-undefined LINKER:-u,main)
  if(NOT P_PROBE)
    target_link_options(${target} PRIVATE LINKER:-u,ScriboExtensionVersion
                        -Wl,--version-script=${SCRIBO_PLUGIN_EXPORTS})
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${SCRIBO_PLUGIN_EXPORTS})
  endif()
  scribo_bundle(TARGET ${target} NAME ${P_NAME} IDENTIFIER ${P_IDENTIFIER}
                DEVELOPMENT_REGION ${P_DEVELOPMENT_REGION} OUTPUT_DIR ${P_OUTPUT_DIR} RESOURCES ${P_RESOURCES})
endfunction()
