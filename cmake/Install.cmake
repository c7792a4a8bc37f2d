# What is installed, and how others find it: find_package(QuillFoundation) and pkg-config. Paths are relative to the
# prefix, so that a DESTDIR or a moved tree works.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(include_folder ${CMAKE_INSTALL_INCLUDEDIR}/QuillFoundation)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/QuillFoundation)

target_include_directories(QuillFoundation INTERFACE $<INSTALL_INTERFACE:${include_folder}>)
install(TARGETS QuillFoundation EXPORT QuillFoundationTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
foreach(folder Framework Platform)
  install(DIRECTORY ${folder} DESTINATION ${include_folder}
    FILES_MATCHING PATTERN "*.h" PATTERN detail EXCLUDE)
endforeach()

install(EXPORT QuillFoundationTargets NAMESPACE QuillFoundation:: DESTINATION ${package_folder})
configure_package_config_file(cmake/QuillFoundationConfig.cmake.in QuillFoundationConfig.cmake
  INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(QuillFoundationConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/QuillFoundationConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/QuillFoundationConfigVersion.cmake
  DESTINATION ${package_folder})

# What a program must define to use this very build.
set(definitions "")
if(NOT BUILD_SHARED_LIBS)
  list(APPEND definitions -DQUILL_STATIC)
endif()
foreach(choice QUILL_NO_INT128 QUILL_NO_FLOATING_CHARCONV)
  if(${choice})
    list(APPEND definitions -D${choice})
  endif()
endforeach()
list(JOIN definitions " " definitions)
file(RELATIVE_PATH up_to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/QuillFoundation.pc.in QuillFoundation.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/QuillFoundation.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
