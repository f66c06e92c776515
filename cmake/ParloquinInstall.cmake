# What is installed, in components: library, development, qml and sandbox. ParloquinPackages.cmake
# makes a Debian package of each.
include(CMakePackageConfigHelpers)
set(configFolder ${CMAKE_INSTALL_LIBDIR}/cmake/Parloquin)
set(qmlFolder ${CMAKE_INSTALL_LIBDIR}/qt6/qml)
set(translations ${CMAKE_INSTALL_DATADIR}/parloquin/translations)
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME development)

# What a static kit, or a pkg-config of one, needs beside Qt.
set(PARLOQUIN_MODULES gio-unix-2.0 libmnl libplist-2.0 nettle simdjson)
list(JOIN PARLOQUIN_MODULES " " PARLOQUIN_MODULES)

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/ParloquinConfig.cmake.in
    ParloquinConfig.cmake INSTALL_DESTINATION ${configFolder} PATH_VARS qmlFolder translations)
write_basic_package_version_file(ParloquinConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ParloquinConfig.cmake
    ${PROJECT_BINARY_DIR}/ParloquinConfigVersion.cmake DESTINATION ${configFolder})

# Finds its prefix from where it lies itself, so that the copy may be moved.
file(RELATIVE_PATH PARLOQUIN_UP /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${PROJECT_SOURCE_DIR}/cmake/parloquin.pc.in parloquin.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/parloquin.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# install_library(TARGET NAME): a library, its headers and what find_package() reads of it.
function(install_library target name)
    install(TARGETS ${target} ${ARGN} EXPORT Parloquin${name}Targets
        LIBRARY COMPONENT library NAMELINK_COMPONENT development
        RUNTIME COMPONENT sandbox
        FILE_SET HEADERS)
    install(EXPORT Parloquin${name}Targets NAMESPACE Parloquin:: DESTINATION ${configFolder})
endfunction()
install_library(Parloquin "")
install_library(ParloquinAdapters Adapters)
if(TARGET ParloquinTestKit)
    install_library(ParloquinTestKit TestKit parloquin-sandbox)
endif()

install(DIRECTORY ${Parloquin_TRANSLATIONS_DIR}/ DESTINATION ${translations} COMPONENT library
    FILES_MATCHING PATTERN "*.qm" PATTERN CMakeFiles EXCLUDE)
install(FILES ${PROJECT_SOURCE_DIR}/Parloquin/Translations/parloquin.ts DESTINATION ${translations})

if(TARGET ParloquinQml)
    file(RELATIVE_PATH up /${qmlFolder}/Parloquin /${CMAKE_INSTALL_LIBDIR})
    set_target_properties(ParloquinQml PROPERTIES INSTALL_RPATH "$ORIGIN/${up}")
    get_target_property(module ParloquinQml LIBRARY_OUTPUT_DIRECTORY)
    install(TARGETS ParloquinQml LIBRARY DESTINATION ${qmlFolder}/Parloquin COMPONENT qml)
    install(FILES ${module}/qmldir ${module}/ParloquinQml.qmltypes
        DESTINATION ${qmlFolder}/Parloquin COMPONENT qml)
endif()

if(PROJECT_IS_TOP_LEVEL)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/uninstall.cmake.in uninstall.cmake @ONLY)
    add_custom_target(uninstall COMMAND ${CMAKE_COMMAND} -P ${PROJECT_BINARY_DIR}/uninstall.cmake)
    include(ParloquinPackages)
endif()
