# What `cmake --install` and `cpack` install: the component Runtime has everything for finished programs and Qt
# Designer, Development the rest, and SceneEditor the example of that name, if it is built. All paths in installed files
# are relative, so the prefix can be moved. ORVEK_SUFFIX keeps all names different from those of an installation for the
# other Qt.
include(CMakePackageConfigHelpers)

include(GNUInstallDirs)
if(CMAKE_INSTALL_DOCDIR STREQUAL "${CMAKE_INSTALL_DATAROOTDIR}/doc/${PROJECT_NAME}")
    set(CMAKE_INSTALL_DOCDIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/orvekqtwidgets${ORVEK_SUFFIX})
endif()
# The headers that uic writes differ. Those for Qt 5 stay in the usual place.
set(_include ${CMAKE_INSTALL_INCLUDEDIR})
if(ORVEK_SUFFIX)
    set(_include ${CMAKE_INSTALL_INCLUDEDIR}/orvekqtwidgets${ORVEK_SUFFIX})
endif()
set(ORVEK_PLUGIN_DIR ${CMAKE_INSTALL_LIBDIR}/qt${ORVEK_QT_VERSION}/plugins CACHE PATH
    "What goes into QT_PLUGIN_PATH, relative to the prefix; the link for Qt Designer comes into designer/ below it")

# Private headers must not be installed: the targets list the public ones.
set(_libraries OrvekQtWidgets)
set(_headers_of_OrvekQtWidgets Orvek/PlugIns/Qt/OrvekQtWidgets)
if(TARGET OrvekQtHost)
    list(APPEND _libraries OrvekQtHost)
    set(_headers_of_OrvekQtHost Orvek/Host)
endif()
foreach(_library IN LISTS _libraries)
    install(TARGETS ${_library} EXPORT OrvekQtWidgetsTargets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Runtime
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_COMPONENT Development
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Development
        PUBLIC_HEADER DESTINATION ${_include}/${_headers_of_${_library}} COMPONENT Development
        INCLUDES DESTINATION ${_include})
endforeach()
install(DIRECTORY Orvek/Base Orvek/CrossPlatform
    DESTINATION ${_include}/Orvek COMPONENT Development FILES_MATCHING PATTERN *.h)

if(WIN32)
    install(FILES $<TARGET_FILE:OrvekQtWidgets> DESTINATION ${ORVEK_PLUGIN_DIR}/designer COMPONENT Runtime)
else()
    # A link to the name with the major version, as the plain name comes with the development files. Nothing else may be
    # in that folder: Designer loads every library that it finds there.
    set(_prefix ${CMAKE_SHARED_LIBRARY_PREFIX}OrvekQtWidgets${ORVEK_SUFFIX})
    if(APPLE)
        set(_soname ${_prefix}.${PROJECT_VERSION_MAJOR}${CMAKE_SHARED_LIBRARY_SUFFIX})
    else()
        set(_soname ${_prefix}${CMAKE_SHARED_LIBRARY_SUFFIX}.${PROJECT_VERSION_MAJOR})
    endif()
    set(_link ${PROJECT_BINARY_DIR}/installed/designer/${_prefix}${CMAKE_SHARED_LIBRARY_SUFFIX})
    get_filename_component(_plugin_dir ${ORVEK_PLUGIN_DIR} ABSOLUTE BASE_DIR ${CMAKE_INSTALL_PREFIX})
    file(RELATIVE_PATH _target ${_plugin_dir}/designer ${CMAKE_INSTALL_FULL_LIBDIR}/${_soname})
    file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/installed/designer)
    file(CREATE_LINK ${_target} ${_link} SYMBOLIC)
    install(FILES ${_link} DESTINATION ${ORVEK_PLUGIN_DIR}/designer COMPONENT Runtime)
endif()

# Documentation and translations, if this build has them. The pages come from the target docs; pictures and linked files
# are where README.md expects them.
install(FILES CHANGELOG.md CONTRIBUTING.md README.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT Development OPTIONAL)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT Development PATTERN __pycache__ EXCLUDE)
install(DIRECTORY docs/images DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs COMPONENT Development)
install(DIRECTORY ${PROJECT_BINARY_DIR}/docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT Development OPTIONAL
    FILES_MATCHING PATTERN *.html PATTERN *.css PATTERN *.js PATTERN *.png PATTERN *.qch)
install(DIRECTORY ${PROJECT_BINARY_DIR}/translations/ DESTINATION ${ORVEK_SHARE}/translations
    COMPONENT Runtime OPTIONAL FILES_MATCHING PATTERN orvekqtwidgets_*.qm PATTERN orvekqthost_*.qm)

# find_package(OrvekQtWidgets), or OrvekQtWidgets6 for Qt 6. The targets have the same names.
set(_package OrvekQtWidgets${ORVEK_SUFFIX})
set(_config ${CMAKE_INSTALL_LIBDIR}/cmake/${_package})
set_target_properties(${_libraries} PROPERTIES ORVEK_QT_VERSION ${ORVEK_QT_VERSION} EXPORT_PROPERTIES ORVEK_QT_VERSION)
configure_package_config_file(cmake/OrvekQtWidgetsConfig.cmake.in ${PROJECT_BINARY_DIR}/installed/${_package}Config.cmake
    INSTALL_DESTINATION ${_config} PATH_VARS ORVEK_PLUGIN_DIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/installed/${_package}ConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(EXPORT OrvekQtWidgetsTargets NAMESPACE OrvekQtWidgets:: DESTINATION ${_config} COMPONENT Development)
install(FILES
    ${PROJECT_BINARY_DIR}/installed/${_package}Config.cmake
    ${PROJECT_BINARY_DIR}/installed/${_package}ConfigVersion.cmake
    DESTINATION ${_config} COMPONENT Development)

# pkg-config
file(RELATIVE_PATH _pc_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" _pc_prefix ${_pc_prefix})
foreach(_library IN LISTS _libraries)
    string(TOLOWER ${_library} _name)
    configure_file(cmake/${_name}.pc.in ${PROJECT_BINARY_DIR}/installed/${_name}${ORVEK_SUFFIX}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/installed/${_name}${ORVEK_SUFFIX}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Development)
endforeach()

# A host does its own packaging.
if(_orvek_is_top)
    include(cmake/OrvekPackage.cmake)
endif()
