# switchpanel_defaults(target): what every target of this project is compiled with.
function(switchpanel_defaults target)
  target_compile_features(${target} PUBLIC cxx_std_17)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
  target_compile_definitions(${target} PRIVATE
    # Release builds of Qt drop file and function from log messages unless this is defined, and the log view of the panel
    # selects messages by both.
    QT_MESSAGELOGCONTEXT
    QT_NO_CAST_TO_ASCII QT_DEPRECATED_WARNINGS QT_NO_FOREACH)

  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /utf-8 /permissive- /d1trimfile:${CMAKE_SOURCE_DIR}/)
    target_compile_definitions(${target} PRIVATE NOMINMAX WIN32_LEAN_AND_MEAN)
    if(SWITCHPANEL_WERROR)
      target_compile_options(${target} PRIVATE /WX)
    endif()
  else()
    target_compile_options(${target} PRIVATE
      -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wnon-virtual-dtor -Woverloaded-virtual
      -Wnull-dereference
      # Source paths start at the repository: the folder that a person clones into must not decide which log messages reach
      # the panel, nor stand in a released binary.
      -ffile-prefix-map=${CMAKE_BINARY_DIR}/= -ffile-prefix-map=${CMAKE_SOURCE_DIR}/=)
    if(SWITCHPANEL_WERROR)
      target_compile_options(${target} PRIVATE -Werror)
    endif()
  endif()

  if(SWITCHPANEL_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${SWITCHPANEL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer
      # GCC's flow analysis reports the sanitizers' own instrumentation, and <regex> under it.
      -Wno-null-dereference $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    target_link_options(${target} PRIVATE -fsanitize=${SWITCHPANEL_SANITIZE})
    target_compile_definitions(${target} PRIVATE SWITCHPANEL_SANITIZED)
  endif()
endfunction()

# switchpanel_platform_library(name SOURCES … [PUBLIC …] [PRIVATE …]): one shared platform library with a public header in
# include/<name>/, its export macro in <name>/<name>_export.h, alias SwitchPanel::<name>.
function(switchpanel_platform_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;PUBLIC;PRIVATE")
  add_library(${name} SHARED ${arg_SOURCES})
  add_library(SwitchPanel::${name} ALIAS ${name})
  switchpanel_defaults(${name})
  string(TOUPPER ${name} upper)
  generate_export_header(${name}
    EXPORT_MACRO_NAME ${upper}_EXPORT
    EXPORT_FILE_NAME "${CMAKE_CURRENT_BINARY_DIR}/include/${name}/${name}_export.h")
  target_include_directories(${name} PUBLIC
    "$<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>"
    "$<BUILD_INTERFACE:${CMAKE_CURRENT_BINARY_DIR}/include>"
    "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>")
  target_link_libraries(${name} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE})
  set_target_properties(${name} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
    AUTOMOC ON
    BUILD_RPATH_USE_ORIGIN ON
    INSTALL_RPATH "$ORIGIN")
  install(TARGETS ${name} EXPORT SwitchPanelPlatform
    RUNTIME DESTINATION bin LIBRARY DESTINATION lib ARCHIVE DESTINATION lib)
  install(DIRECTORY include/ "${CMAKE_CURRENT_BINARY_DIR}/include/" DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    COMPONENT development)
endfunction()
