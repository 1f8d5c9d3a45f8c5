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
set(SCRIBO_PLUGIN_TEST_DRIVER ${CMAKE_CURRENT_LIST_DIR}/RunPluginTest.cmake)

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

# scribopdk_add_plugin_test(<name> PLUGIN <plug-in target> SCORE <score>
#                           [MEASURES <A-B>] [STAVES <A-B>] [ACTIONS <command>...]
#                           [ALERTS <text>...] [EXPECT <score>])
#
# Registers the test <name>: the reference host (scribo-host run) loads the plug-in, selects
# MEASURES (by the numbers printed in SCORE) of STAVES (counted from the top), both everything
# when not given, invokes the plug-in's menu item, and answers its dialogs with ACTIONS, the
# commands of scribo-host's terminal dialog ("13" clicks item 13, "14 3" types 3 into item 14,
# "ok"); without ACTIONS every dialog is cancelled. The test passes when the plug-in ran, raised
# exactly the ALERTS in order (as the user reads them), and turned SCORE into exactly the score
# file EXPECT, or, without EXPECT, left it unchanged.
function(scribopdk_add_plugin_test name)
  cmake_parse_arguments(T "" "PLUGIN;SCORE;MEASURES;STAVES;EXPECT" "ACTIONS;ALERTS" ${ARGN})
  if(NOT T_PLUGIN OR NOT T_SCORE)
    message(FATAL_ERROR "scribopdk_add_plugin_test needs PLUGIN and SCORE")
  endif()
  if(TARGET ScriboPDK::scribo-host)
    set(host ScriboPDK::scribo-host)
  else()
    set(host scribo-host)
  endif()
  get_filename_component(score ${T_SCORE} ABSOLUTE)
  set(expect "")
  if(T_EXPECT)
    get_filename_component(expect ${T_EXPECT} ABSOLUTE)
  endif()
  string(JOIN "\n" actions ${T_ACTIONS})
  string(JOIN "\n" alerts ${T_ALERTS})
  set(config ${CMAKE_CURRENT_BINARY_DIR}/${name}.plugin-test.cmake)
  file(GENERATE OUTPUT ${config} CONTENT "set(HOST [==[$<TARGET_FILE:${host}>]==])
set(PLUGIN [==[$<TARGET_PROPERTY:${T_PLUGIN},SCRIBO_BUNDLE_DIR>]==])
set(SCORE [==[${score}]==])
set(MEASURES [==[${T_MEASURES}]==])
set(STAVES [==[${T_STAVES}]==])
set(ACTIONS [==[${actions}]==])
set(ALERTS [==[${alerts}]==])
set(EXPECT [==[${expect}]==])
set(OUTPUT [==[${CMAKE_CURRENT_BINARY_DIR}/${name}.result.musicxml]==])
")
  add_test(NAME ${name} COMMAND ${CMAKE_COMMAND} -DCONFIG=${config} -P ${SCRIBO_PLUGIN_TEST_DRIVER})
endfunction()
