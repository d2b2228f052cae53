# The window's QML modules, one for each folder of src/app.

# A qmldir in every folder of a module, which versions before 6.8 do not make and the views do not need.
if(COMMAND qt_policy)
    qt_policy(SET QTP0004 NEW)
endif()

# lumaphone_add_window_module([<Name>] VIEWS ... [SINGLETONS ...] [RESOURCES ...] [SOURCES ...] [PUBLIC ...] [PRIVATE ...] [DEPENDENCIES ...])
# The QML module Lumaphone.<Name>, or Lumaphone itself, made of this folder's views and of its C++ types (SOURCES): the static library
# lumaphone_app_<folder>. DEPENDENCIES: modules that register types of its properties. Without plugins, which would take as long to build as all byte code: QmlEngineSetup.cpp names the modules instead.
function(lumaphone_add_window_module)
    cmake_parse_arguments(ARG "" "" "VIEWS;SINGLETONS;RESOURCES;SOURCES;PUBLIC;PRIVATE;DEPENDENCIES" ${ARGN})
    list(JOIN ARG_UNPARSED_ARGUMENTS "" name)
    list(PREPEND ARG_UNPARSED_ARGUMENTS Lumaphone)
    list(JOIN ARG_UNPARSED_ARGUMENTS "." uri)
    list(JOIN ARG_UNPARSED_ARGUMENTS "/" place)
    string(TOLOWER "lumaphone_app_${name}" target)
    string(REGEX REPLACE "_$" "" target "${target}")
    set_source_files_properties(${ARG_SINGLETONS} PROPERTIES QT_QML_SINGLETON_TYPE TRUE)

    add_library(${target} STATIC ${ARG_SOURCES})
    set_target_properties(${target} PROPERTIES AUTOMOC ON UNITY_BUILD_BATCH_SIZE 0)
    qt_add_qml_module(${target} URI ${uri} VERSION 1.0 NO_PLUGIN DEPENDENCIES QtQuick ${ARG_DEPENDENCIES} RESOURCE_PREFIX /qt/qml
        OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/qml/${place}"
        QML_FILES ${ARG_SINGLETONS} ${ARG_VIEWS} RESOURCES ${ARG_RESOURCES})
    # Byte code starts as quickly as compiled bindings here, and builds in a fraction of the time.
    set_target_properties(${target} PROPERTIES QT_QMLCACHEGEN_ARGUMENTS "--only-bytecode")
    # The registration of types includes their headers by bare name.
    target_include_directories(${target} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
    target_link_libraries(${target}
        PUBLIC lumaphone_options Qt6::Quick ${ARG_PUBLIC}
        PRIVATE lumaphone_generated_code_warnings lumaphone_strict_text ${ARG_PRIVATE})
    if(CMAKE_UNITY_BUILD)
        lumaphone_use_window_headers(${target})
        if(TARGET ${target}_qmlcache) # versions before 6.8 compile byte code in a target of its own
            lumaphone_use_window_headers(${target}_qmlcache)
        endif()
    endif()
    set_property(GLOBAL APPEND PROPERTY LUMAPHONE_LIBRARIES ${target})
endfunction()

# The headers that all of the window's sources need are read once.
function(lumaphone_use_window_headers target)
    if(NOT TARGET lumaphone_window_headers)
        set(source "${CMAKE_BINARY_DIR}/lumaphone_window_headers.cpp")
        file(GENERATE OUTPUT "${source}" CONTENT "// Made only for its precompiled headers.\n")
        add_library(lumaphone_window_headers OBJECT "${source}")
        target_link_libraries(lumaphone_window_headers PRIVATE lumaphone_options lumaphone_generated_code_warnings lumaphone_strict_text
            Qt6::Quick QCoro6::Core)
        target_precompile_headers(lumaphone_window_headers PRIVATE <QtQml/qqml.h> <QtQml/qqmlprivate.h> <QAbstractListModel> <QDateTime>
            <QUrl> <QUuid> <QVariantMap> <qcorotask.h> <functional> <memory> <optional> <string> <vector>)
    endif()
    target_link_libraries(${target} PRIVATE lumaphone_options lumaphone_generated_code_warnings lumaphone_strict_text Qt6::Quick)
    target_precompile_headers(${target} REUSE_FROM lumaphone_window_headers)
endfunction()
