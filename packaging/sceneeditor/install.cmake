# How a Linux desktop shows the scene editor: its entry in menus, its icon, its page in a software centre, its manual page.
set(SCENE_EDITOR_ID orvek-scene-editor${ORVEK_SUFFIX})
set(SCENE_EDITOR_KIND "")
if(ORVEK_SUFFIX)
    set(SCENE_EDITOR_KIND " (Qt ${ORVEK_QT_VERSION})") # beside the other one in a menu
endif()
# Nobody has registered a domain for it, which such names usually begin with.
set(SCENE_EDITOR_COMPONENT orvek.qtwidgets.SceneEditor${ORVEK_SUFFIX})
set(_folder ${PROJECT_SOURCE_DIR}/packaging/sceneeditor)
set(_made ${PROJECT_BINARY_DIR}/installed)

configure_file(${_folder}/orvek-scene-editor.desktop.in ${_made}/${SCENE_EDITOR_ID}.desktop @ONLY)
install(FILES ${_made}/${SCENE_EDITOR_ID}.desktop DESTINATION share/applications COMPONENT SceneEditor)

foreach(size IN ITEMS 48x48 128x128)
    install(FILES ${_folder}/orvek-scene-editor-${size}.png DESTINATION share/icons/hicolor/${size}/apps
        RENAME ${SCENE_EDITOR_ID}.png COMPONENT SceneEditor)
endforeach()
install(FILES ${_folder}/orvek-scene-editor.svg DESTINATION share/icons/hicolor/scalable/apps
    RENAME ${SCENE_EDITOR_ID}.svg COMPONENT SceneEditor)

configure_file(${_folder}/orvek-scene-editor.metainfo.xml.in ${_made}/${SCENE_EDITOR_COMPONENT}.metainfo.xml @ONLY)
install(FILES ${_made}/${SCENE_EDITOR_COMPONENT}.metainfo.xml DESTINATION share/metainfo COMPONENT SceneEditor)

configure_file(${_folder}/SceneEditor.1.in ${_made}/SceneEditor${ORVEK_SUFFIX}.1 @ONLY)
set(_manual ${_made}/SceneEditor${ORVEK_SUFFIX}.1)
# Debian wants it compressed, and readers do not care.
if(ORVEK_GZIP)
    execute_process(COMMAND ${ORVEK_GZIP} -9nc ${_manual} OUTPUT_FILE ${_manual}.gz)
    string(APPEND _manual .gz)
endif()
install(FILES ${_manual} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT SceneEditor)
