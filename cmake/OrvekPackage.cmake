# `cpack -G DEB` makes liborvekqtwidgets1, for programs and Qt Designer, liborvekqtwidgets-dev for building with it and,
# if the examples are built, orvek-scene-editor; for Qt 6 liborvekqtwidgets6-1, liborvekqtwidgets6-dev and
# orvek-scene-editor-qt6. `cpack -G TGZ` makes one archive.
set(CPACK_PACKAGE_NAME orvekqtwidgets${ORVEK_SUFFIX})
set(ORVEK_PACKAGE_MAINTAINER "$ENV{ORVEK_PACKAGE_MAINTAINER}" CACHE STRING
    "Who answers for Debian packages made here: \"Name <address>\"; without it cpack -G DEB refuses")
set(CPACK_PACKAGE_VENDOR "OrvekQtWidgets maintainers")
foreach(_contact IN ITEMS CPACK_PACKAGE_CONTACT CPACK_DEBIAN_PACKAGE_MAINTAINER ORVEK_PACKAGE_MAINTAINER)
    if(${_contact})
        set(CPACK_PACKAGE_CONTACT "${${_contact}}")
    endif()
endforeach()
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

set(_development liborvekqtwidgets${ORVEK_SUFFIX}-dev)
if(ORVEK_QT_VERSION EQUAL 5)
    set(_runtime liborvekqtwidgets${PROJECT_VERSION_MAJOR})
    set(_editor orvek-scene-editor)
    set(_qt_packages "qtbase5-dev (>= 5.15)" qttools5-dev-tools qttranslations5-l10n)
else()
    set(_runtime liborvekqtwidgets${ORVEK_SUFFIX}-${PROJECT_VERSION_MAJOR})
    set(_editor orvek-scene-editor-qt${ORVEK_QT_VERSION})
    set(_qt_packages "qt6-base-dev (>= 6.4)" designer-qt6 qt6-translations-l10n)
endif()
list(GET _qt_packages 0 _qt_development)
list(GET _qt_packages 1 _qt_designer)
list(GET _qt_packages 2 _qt_translations)
set(_components Runtime Development)
if(ORVEK_BUILD_EXAMPLES)
    list(APPEND _components SceneEditor)
endif()
# What Debian requires with the documentation; an ordinary installation does not need it.
find_program(ORVEK_GZIP gzip)
foreach(_component IN LISTS _components)
    if(_component STREQUAL Runtime)
        set(_package ${_runtime})
    elseif(_component STREQUAL Development)
        set(_package ${_development})
    else()
        set(_package ${_editor})
    endif()
    install(FILES packaging/debian/copyright DESTINATION share/doc/${_package} COMPONENT Debian${_component}
        EXCLUDE_FROM_ALL)
    if(ORVEK_GZIP)
        configure_file(packaging/debian/changelog.in ${PROJECT_BINARY_DIR}/installed/changelog.Debian @ONLY)
        execute_process(COMMAND ${ORVEK_GZIP} -9nc ${PROJECT_BINARY_DIR}/installed/changelog.Debian
            OUTPUT_FILE ${PROJECT_BINARY_DIR}/installed/changelog.Debian.gz)
        install(FILES ${PROJECT_BINARY_DIR}/installed/changelog.Debian.gz DESTINATION share/doc/${_package}
            COMPONENT Debian${_component} EXCLUDE_FROM_ALL)
    endif()
endforeach()

set(CPACK_COMPONENTS_ALL ${_components})
list(TRANSFORM _components PREPEND Debian OUTPUT_VARIABLE _debian_components)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_BINARY_DIR}/installed/OrvekCPackOptions.cmake)
file(WRITE ${CPACK_PROJECT_CONFIG_FILE} "
if(CPACK_GENERATOR STREQUAL \"DEB\")
    if(NOT CPACK_PACKAGE_CONTACT)
        message(FATAL_ERROR \"A Debian package names its maintainer: cmake -DORVEK_PACKAGE_MAINTAINER='Name <address>'\")
    endif()
    list(APPEND CPACK_COMPONENTS_ALL ${_debian_components})
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
    # Each package has its own summary.
    set(CPACK_PACKAGE_DESCRIPTION_SUMMARY \"\")
endif()
")

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY >=)
# Independent of the umask of the build.
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${_runtime})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${_development})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${_runtime} (= ${PROJECT_VERSION}-1), ${_qt_development}")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS ${_qt_designer})

set(CPACK_DEBIAN_SCENEEDITOR_PACKAGE_NAME ${_editor})
set(CPACK_DEBIAN_SCENEEDITOR_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_SCENEEDITOR_PACKAGE_RECOMMENDS ${_qt_translations})
# The other package's library is found here; dpkg does not know which package it belongs to.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/lib)
set(CPACK_DEBIAN_SCENEEDITOR_PACKAGE_DEPENDS "${_runtime} (= ${PROJECT_VERSION}-1)")

# Without the trigger the linker would not see the library until the next package with one.
file(WRITE ${PROJECT_BINARY_DIR}/installed/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/installed/triggers)

set(_about "One-row editors for numbers, vectors, colours, texts and file names,
sections that fold and search, a property panel, and a native widget for a
renderer to draw on. Qt Designer offers the widgets in its widget box. A second
library, OrvekQtHost, adds what people who work in such panels expect: input,
undo, search and accessibility.")
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "${PROJECT_DESCRIPTION}\n${_about}")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
    "${PROJECT_DESCRIPTION} - headers\n${_about}\n.\nThis package has what building a program with them takes.")
set(CPACK_DEBIAN_SCENEEDITOR_DESCRIPTION "editor for the objects, light and camera of a small 3D scene
An example of what the widgets of OrvekQtWidgets can do: meshes, a material
each, a light, a camera and the surroundings, edited beside a view of them.")

include(CPack)
cpack_add_component_group(library DISPLAY_NAME "Library")
cpack_add_component_group(development DISPLAY_NAME "Development files")
cpack_add_component(Runtime DISPLAY_NAME "Library and Qt Designer plugin" GROUP library)
cpack_add_component(DebianRuntime GROUP library HIDDEN)
cpack_add_component(Development DISPLAY_NAME "Headers and build files" GROUP development DEPENDS Runtime)
cpack_add_component(DebianDevelopment GROUP development HIDDEN)
if(ORVEK_BUILD_EXAMPLES)
    cpack_add_component_group(sceneeditor DISPLAY_NAME "Scene editor")
    cpack_add_component(SceneEditor DISPLAY_NAME "Scene editor" GROUP sceneeditor DEPENDS Runtime)
    cpack_add_component(DebianSceneEditor GROUP sceneeditor HIDDEN)
endif()
