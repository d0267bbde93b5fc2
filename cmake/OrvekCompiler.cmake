# Settings for all targets of this project, but not for a host that adds the project to its own build.
add_library(OrvekCompiler INTERFACE)
target_compile_definitions(OrvekCompiler INTERFACE
    QT_NO_FOREACH
    QT_DEPRECATED_WARNINGS
    QT_DISABLE_DEPRECATED_BEFORE=0x050F00)
# The loader's name for the folder of the file that it loads.
set(ORVEK_ORIGIN "$ORIGIN")
if(APPLE)
    set(ORVEK_ORIGIN "@loader_path")
endif()
# The libraries use dynamic casts, even in the build of a host without RTTI.
set(ORVEK_WITH_RTTI -frtti)
if(MSVC)
    set(ORVEK_WITH_RTTI /GR)
    target_compile_options(OrvekCompiler INTERFACE /utf-8)
else()
    target_compile_options(OrvekCompiler INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
    # Macros of Qt Test are called without variadic arguments.
    if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
        target_compile_options(OrvekCompiler INTERFACE -Wno-gnu-zero-variadic-macro-arguments)
    endif()
    # Private classes with members from unnamed namespaces. If several sources are compiled as one, the compiler takes most
    # of them for headers, where that would be a mistake.
    if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
        target_compile_options(OrvekCompiler INTERFACE -Wno-subobject-linkage)
    endif()
    if(ORVEK_WARNINGS_AS_ERRORS)
        target_compile_options(OrvekCompiler INTERFACE -Werror)
    endif()
endif()
if(ORVEK_SANITIZE)
    set(_sanitize -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all)
    target_compile_options(OrvekCompiler INTERFACE ${_sanitize} -fno-omit-frame-pointer)
    target_compile_definitions(OrvekCompiler INTERFACE ORVEK_SANITIZE)
    target_link_options(OrvekCompiler INTERFACE ${_sanitize})
endif()
