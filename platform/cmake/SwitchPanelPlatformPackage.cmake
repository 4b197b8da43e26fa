# Installs the platform libraries as the package SwitchPanelPlatform: what another build of this project finds with
# -DSWITCHPANEL_PLATFORM=external, and the pattern for a host's own implementation. The package may be moved.
include(CMakePackageConfigHelpers)

get_directory_property(SWITCHPANEL_PCAPPLUSPLUS_IN_USE DIRECTORY pcapplusplus DEFINITION SWITCHPANEL_PCAPPLUSPLUS_IN_USE)

# Whoever calls the decoder reads packets by PcapPlusPlus's names, so those come along.
if(SWITCHPANEL_PCAPPLUSPLUS_IN_USE STREQUAL "bundled")
  # In the build its users see the sources' folder and the libpcap of this machine; installed, the copied headers and
  # whatever libpcap is there.
  get_target_property(links pcapplusplus INTERFACE_LINK_LIBRARIES)
  list(TRANSFORM links PREPEND "$<BUILD_INTERFACE:")
  list(TRANSFORM links APPEND ">")
  set_target_properties(pcapplusplus PROPERTIES
    INTERFACE_LINK_LIBRARIES "${links};$<INSTALL_INTERFACE:$<LINK_ONLY:SwitchPanel::libpcap>>"
    INTERFACE_INCLUDE_DIRECTORIES
    "$<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/pcapplusplus/include>;$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/pcapplusplus>")
  install(DIRECTORY pcapplusplus/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/pcapplusplus COMPONENT development)
endif()
install(TARGETS pcapplusplus EXPORT SwitchPanelPlatform ARCHIVE DESTINATION lib COMPONENT development)

set(SWITCHPANEL_PLATFORM_TARGETS
  SwitchPanel::basecomm SwitchPanel::consoleportcomm SwitchPanel::lxtranslate SwitchPanel::pcapplusplus
  SwitchPanel::ptpv2parser SwitchPanel::switchdevicebll SwitchPanel::zrextensionsystem)
set(package_dir "lib/cmake/SwitchPanelPlatform")
configure_package_config_file(cmake/SwitchPanelPlatformConfig.cmake.in
  "${CMAKE_CURRENT_BINARY_DIR}/SwitchPanelPlatformConfig.cmake"
  INSTALL_DESTINATION ${package_dir}
  NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file("${CMAKE_CURRENT_BINARY_DIR}/SwitchPanelPlatformConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(EXPORT SwitchPanelPlatform
  NAMESPACE SwitchPanel::
  FILE SwitchPanelPlatformTargets.cmake
  DESTINATION ${package_dir}
  COMPONENT development)
install(FILES
  "${CMAKE_CURRENT_BINARY_DIR}/SwitchPanelPlatformConfig.cmake"
  "${CMAKE_CURRENT_BINARY_DIR}/SwitchPanelPlatformConfigVersion.cmake"
  DESTINATION ${package_dir}
  COMPONENT development)
