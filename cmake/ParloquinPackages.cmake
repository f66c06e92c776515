# Debian packages of the components. As they come they are for development against the sandbox; for a
# service of your own `cmake/package` sets its address and a name of your own for them.
set(PARLOQUIN_PACKAGE_NAME "" CACHE STRING
    "name of your own that the packages' names end in, as \"-acme\"")
if(PARLOQUIN_PACKAGE_NAME AND NOT PARLOQUIN_PACKAGE_NAME MATCHES "^-[a-z0-9][a-z0-9+.-]*$")
    message(FATAL_ERROR "PARLOQUIN_PACKAGE_NAME: expected a dash and small letters, digits, + . -")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME parloquin)
set(CPACK_PACKAGE_VENDOR "Parloquin")
set(CPACK_PACKAGE_CONTACT "Parloquin maintainers <maintainers@parloquin.example>" CACHE STRING
    "who answers for the packages")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_COMPONENTS_ALL library development sandbox)
if(TARGET ParloquinQml)
    list(APPEND CPACK_COMPONENTS_ALL qml)
endif()
if(NOT TARGET parloquin-sandbox)
    list(REMOVE_ITEM CPACK_COMPONENTS_ALL sandbox)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
    ${PROJECT_BINARY_DIR}/Parloquin ${PROJECT_BINARY_DIR}/Parloquin/Adapters)

if(PARLOQUIN_SERVICE_HOST MATCHES "^(127\\.|\\[::1\\])")
    set(where " It is built for the sandbox at ${PARLOQUIN_SERVICE_HOST}, for development: build\n\
 packages of your own for your service.")
else()
    set(where " It is built for the service at ${PARLOQUIN_SERVICE_HOST}.")
endif()

# debian_package(COMPONENT NAME SECTION DEPENDS SUMMARY TEXT)
function(debian_package component name section depends summary text)
    string(TOUPPER ${component} key)
    set(full ${name}${PARLOQUIN_PACKAGE_NAME})
    set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${full} PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_PACKAGE_SECTION ${section} PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_PACKAGE_DEPENDS "${depends}" PARENT_SCOPE)
    set(CPACK_COMPONENT_${key}_DESCRIPTION "${summary}\n${text}\n .\n${where}" PARENT_SCOPE)
    if(PARLOQUIN_PACKAGE_NAME) # one kit on a system: the files are the same
        foreach(relation PROVIDES CONFLICTS REPLACES)
            set(CPACK_DEBIAN_${key}_PACKAGE_${relation} ${name} PARENT_SCOPE)
        endforeach()
    endif()

    # What every Debian package says of itself.
    set(folder ${PROJECT_BINARY_DIR}/packages/${component})
    configure_file(${PROJECT_SOURCE_DIR}/cmake/copyright.in ${folder}/copyright @ONLY)
    file(ARCHIVE_CREATE OUTPUT ${folder}/changelog.gz PATHS ${PROJECT_SOURCE_DIR}/CHANGELOG.md
        FORMAT raw COMPRESSION GZip COMPRESSION_LEVEL 9)
    install(FILES ${folder}/copyright ${folder}/changelog.gz DESTINATION share/doc/${full}
        COMPONENT ${component})
endfunction()
set(this "(= ${PROJECT_VERSION})")
set(library libparloquin${PROJECT_VERSION_MAJOR})
debian_package(library ${library} libs "mobile-broadband-provider-info"
    "phone-number verification for Qt apps"
    " A Qt app shows the kit's screens and hears that a number is verified: by\n a message from a messaging app, or by a code that came by SMS.")
debian_package(development libparloquin-dev libdevel
    "${library}${PARLOQUIN_PACKAGE_NAME} ${this}, parloquin-sandbox${PARLOQUIN_PACKAGE_NAME} ${this}, qt6-base-dev"
    "phone-number verification for Qt apps (development files)"
    " Headers, CMake and pkg-config files, and a kit for the tests of apps.")
debian_package(sandbox parloquin-sandbox devel ""
    "local service to develop phone-number verification against"
    " Plays the verification service on this machine, judges every request, and\n brings a stand-in for the messaging apps.")
debian_package(qml qml6-module-parloquin libs "qml6-module-qtquick"
    "phone-number verification for Qt Quick apps"
    " The QML module Parloquin: the kit in a window of its own.")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBS
    "libParloquin ${PROJECT_VERSION_MAJOR} ${library}${PARLOQUIN_PACKAGE_NAME} (>= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/packages/triggers)
file(WRITE ${PROJECT_BINARY_DIR}/packages/triggers "activate-noawait ldconfig\n")
include(CPack)
