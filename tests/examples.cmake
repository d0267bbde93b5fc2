# Tests of the examples.

# The small ones: each opens its window, saves a picture of it and ends by itself. Qt names what is wrong with a widget,
# a connection or a painter in a warning.
foreach(example IN ITEMS OneEditor PanelFromCode ObjectInspector DerivedEditor TrivialEngine)
    if(TARGET ${example})
        add_test(NAME example_${example} COMMAND ${example} --screenshot ${CMAKE_CURRENT_BINARY_DIR}/${example}.png)
        set_tests_properties(example_${example} PROPERTIES TIMEOUT 60
            FAIL_REGULAR_EXPRESSION "QMetaObject;QObject;QLayout;QWidget;QPainter;QBackingStore;QPixmap"
            ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;${ORVEK_SANITIZER_OPTIONS}")
    endif()
endforeach()

if(TARGET TrivialEngine)
    orvek_add_test(tst_trivialengine XCB)
endif()

if(TARGET SceneEditorUi)
    orvek_add_test(tst_looks LIBS SceneEditorUi)
    if(TARGET orvek_translations)
        add_dependencies(tst_looks orvek_translations)
    endif()
endif()

# Every text in the sources is in the .ts files, and translated.
if(TARGET ${ORVEK_QT}::lupdate)
    add_test(NAME translations_complete COMMAND ${CMAKE_COMMAND} -DLUPDATE=$<TARGET_FILE:${ORVEK_QT}::lupdate>
        -DSOURCE=${PROJECT_SOURCE_DIR} -DCHECK=${CMAKE_CURRENT_BINARY_DIR}/translations
        -P ${PROJECT_SOURCE_DIR}/cmake/UpdateTranslations.cmake)
    set_tests_properties(translations_complete PROPERTIES TIMEOUT 120)
else()
    orvek_leave_out(translations_complete "Qt has no lupdate here")
endif()

# The examples of engines, on an X server of their own; the validation layer of Vulkan, where it is installed, writes its
# messages to the standard output. The scene editor draws what their pictures are compared with.
find_file(ORVEK_VULKAN_VALIDATION VkLayer_khronos_validation.json PATH_SUFFIXES vulkan/explicit_layer.d
    PATHS /usr/share /usr/local/share)
mark_as_advanced(ORVEK_VULKAN_VALIDATION)
function(orvek_add_engine_test ENGINE)
    string(TOLOWER tst_${ENGINE}view NAME)
    if(NOT TARGET ${ENGINE}Engine OR NOT ORVEK_XVFB_RUN)
        orvek_leave_out(${NAME} "packages of ${ENGINE}View or xvfb-run are missing")
        return()
    endif()
    string(TOUPPER ${ENGINE} upper)
    add_executable(${NAME} tst_engineview.cpp testsupport.h)
    target_compile_definitions(${NAME} PRIVATE ENGINE=${ENGINE}Engine ENGINE_OF_${upper}
        ENGINE_HEADER=<examples/${ENGINE}View/${ENGINE}Engine.h>)
    target_link_libraries(${NAME} PRIVATE OrvekCompiler ${ENGINE}Engine SceneCore ${ORVEK_QT}::Test)
    set(display ${ORVEK_XVFB_RUN} -a -s "-screen 0 1600x1200x24")
    add_test(NAME ${NAME} COMMAND ${display} $<TARGET_FILE:${NAME}> -o ${NAME}.txt,txt -o -,txt)
    # Once more where a pixel of the widget is one and a half of the device: pictures and positions of the mouse.
    add_test(NAME ${NAME}_scaled COMMAND ${display} $<TARGET_FILE:${NAME}> bothViewsShowTheKnot
        mouseAndWheelMoveOneCamera -o ${NAME}_scaled.txt,txt -o -,txt)
    add_test(NAME example_${ENGINE}View COMMAND ${display} $<TARGET_FILE:${ENGINE}View>
        --screenshot ${CMAKE_CURRENT_BINARY_DIR}/${ENGINE}View.png)
    set(environment "QT_QPA_PLATFORM=xcb;LC_ALL=C.UTF-8;${ORVEK_SANITIZER_OPTIONS}")
    if(ORVEK_VULKAN_VALIDATION)
        list(APPEND environment VK_INSTANCE_LAYERS=VK_LAYER_KHRONOS_validation
            VK_LAYER_ENABLES=VK_VALIDATION_FEATURE_ENABLE_SYNCHRONIZATION_VALIDATION_EXT
            VK_KHRONOS_VALIDATION_REPORT_FLAGS=error,warn)
    endif()
    # Drivers keep memory until the end and are unloaded before it, so no suppression can name them. Objects of Vulkan that
    # are not given back are reported by the validation layer.
    if(ORVEK_SANITIZE)
        string(REPLACE "ASAN_OPTIONS=" "ASAN_OPTIONS=detect_leaks=0:" environment "${environment}")
    endif()
    set_tests_properties(${NAME} ${NAME}_scaled example_${ENGINE}View PROPERTIES TIMEOUT 300
        ENVIRONMENT "${environment}" FAIL_REGULAR_EXPRESSION "VUID-;SYNC-;UNASSIGNED-")
    set_property(TEST ${NAME}_scaled APPEND PROPERTY ENVIRONMENT QT_SCALE_FACTOR=1.5)
endfunction()
orvek_add_engine_test(Vulkan)
orvek_add_engine_test(Ogre)
