# Resources of zvonivec.exe: version, icon, manifest, and Qt's own texts in Czech.
enable_language(RC)
set(WINDOWS_FILES ${CMAKE_SOURCE_DIR}/packaging/windows)
set(ICON_FILE ${CMAKE_SOURCE_DIR}/skin/pictures/icon.ico)
foreach(file zvonivec.rc zvonivec.manifest)
    configure_file(${WINDOWS_FILES}/${file}.in ${CMAKE_CURRENT_BINARY_DIR}/${file} @ONLY)
endforeach()
set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/zvonivec.rc PROPERTIES
    OBJECT_DEPENDS "${ICON_FILE};${CMAKE_CURRENT_BINARY_DIR}/zvonivec.manifest")
target_sources(zvonivec PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/zvonivec.rc)
set_target_properties(zvonivec PROPERTIES WIN32_EXECUTABLE ON)

# A program in one file has no folder for translations.
find_file(QTBASE_CZECH qtbase_cs.qm REQUIRED
    PATHS ${QT_HOST_PATH}/share/qt6/translations ${QT_HOST_PATH}/translations
    NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
set_source_files_properties(${QTBASE_CZECH} PROPERTIES QT_RESOURCE_ALIAS qtbase_cs.qm)
qt_add_resources(zvonivec translations PREFIX /translations FILES ${QTBASE_CZECH})

# The plug-ins of a static Qt that the player uses.
set(STYLE Qt6::QModernWindowsStylePlugin)
if(NOT TARGET ${STYLE}) # before Qt 6.7
    set(STYLE Qt6::QWindowsVistaStylePlugin)
endif()
qt_import_plugins(zvonivec
    INCLUDE Qt6::QWindowsIntegrationPlugin
    INCLUDE_BY_TYPE imageformats Qt6::QGifPlugin
    INCLUDE_BY_TYPE styles ${STYLE})
