# What a host application needs: headers, libraries, and the package file behind
# find_package(Quillet), which gives it the one target Quillet::Quillet.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

file(GLOB INSTALLED_HEADERS CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}
     ${PROJECT_SOURCE_DIR}/platform/contracts/*.h)
list(REMOVE_ITEM INSTALLED_HEADERS platform/contracts/owned_handles.h)
list(APPEND INSTALLED_HEADERS
  base/object.h base/runtime_error.h base/types.h base/variant.h
  control/dispatch.h control/events.h twain/protocol.h
  embed/control.h embed/control_window.h embed/property_file.h embed/property_text.h
  embed/quillet.h embed/stage.h)
install(CODE "
  set(SOURCE_FOLDER \"${PROJECT_SOURCE_DIR}\")
  set(WORK_FOLDER \"${PROJECT_BINARY_DIR}/installed_headers\")
  set(HEADERS \"${INSTALLED_HEADERS}\")
  set(DESTINATION \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_INCLUDEDIR}/quillet\")
  include(\"${PROJECT_SOURCE_DIR}/cmake/install_headers.cmake\")")

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Quillet)
if(WIN32)
  set(platform_library quillet_win32)
  set(QUILLET_DEPENDENCIES "")
else()
  set(platform_library quillet_portable)
  set(QUILLET_DEPENDENCIES "JPEG;PNG;TIFF;GIF")
endif()
set_target_properties(quillet_core PROPERTIES EXPORT_NAME Core)
set_target_properties(${platform_library} PROPERTIES EXPORT_NAME Platform)
set_target_properties(quillet_embed PROPERTIES EXPORT_NAME Quillet)
install(TARGETS quillet_core ${platform_library} quillet_embed EXPORT QuilletTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT QuilletTargets NAMESPACE Quillet:: DESTINATION ${package_folder})

configure_file(${CMAKE_CURRENT_LIST_DIR}/QuilletConfig.cmake.in QuilletConfig.cmake @ONLY)
write_basic_package_version_file(QuilletConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/QuilletConfig.cmake ${PROJECT_BINARY_DIR}/QuilletConfigVersion.cmake
        DESTINATION ${package_folder})
install(FILES LICENSE docs/third-party.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
