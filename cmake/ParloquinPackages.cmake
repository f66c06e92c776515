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

set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(version ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})

if(PARLOQUIN_SERVICE_HOST MATCHES "^(127\\.|\\[::1\\])")
    set(where "It is built for the sandbox at ${PARLOQUIN_SERVICE_HOST}, for development:
make packages of your own for your service.")
else()
    set(where "It is built for the service at ${PARLOQUIN_SERVICE_HOST}.")
endif()

# What every Debian package says of itself, packed without a time, so that it is the same each time.
set(documents ${PROJECT_BINARY_DIR}/packages)
string(TIMESTAMP PARLOQUIN_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(PARLOQUIN_DEBIAN_VERSION ${version})
configure_file(${PROJECT_SOURCE_DIR}/cmake/copyright.in ${documents}/copyright @ONLY)
configure_file(${PROJECT_SOURCE_DIR}/cmake/changelog.Debian.in ${documents}/changelog.Debian @ONLY)
configure_file(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${documents}/changelog COPYONLY)
execute_process(COMMAND gzip -9nf changelog changelog.Debian WORKING_DIRECTORY ${documents}
    COMMAND_ERROR_IS_FATAL ANY)

# debian_package(COMPONENT NAME SECTION DEPENDS DESCRIPTION): the description's first line sums it up.
function(debian_package component name section depends description)
    string(TOUPPER ${component} key)
    set(full ${name}${PARLOQUIN_PACKAGE_NAME})
    set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${full} PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_PACKAGE_SECTION ${section} PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_PACKAGE_DEPENDS "${depends}" PARENT_SCOPE)
    set(CPACK_COMPONENT_${key}_DESCRIPTION "${description}\n\n${where}" PARENT_SCOPE)
    if(PARLOQUIN_PACKAGE_NAME) # one kit on a system: the files are the same
        foreach(relation PROVIDES CONFLICTS REPLACES)
            set(CPACK_DEBIAN_${key}_PACKAGE_${relation} ${name} PARENT_SCOPE)
        endforeach()
    endif()
    install(FILES ${documents}/copyright ${documents}/changelog.gz ${documents}/changelog.Debian.gz
        DESTINATION share/doc/${full} COMPONENT ${component})
endfunction()
file(WRITE ${documents}/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${documents}/triggers)
set(own "${PARLOQUIN_PACKAGE_NAME} (= ${version})")
set(library libparloquin${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_RECOMMENDS "ca-certificates, glib-networking") # proxies and https
debian_package(library ${library} libs mobile-broadband-provider-info
"phone-number verification for Qt apps
A Qt app shows the kit's screens and hears that a number is verified: by
a message from a messaging app, or by a code that came by SMS.")
debian_package(development libparloquin-dev libdevel
    "${library}${own}, parloquin-sandbox${own}, qt6-base-dev"
"phone-number verification for Qt apps (development files)
Headers, CMake and pkg-config files, a kit for the tests of apps, guides and
examples.")
set(guides share/doc/libparloquin-dev${PARLOQUIN_PACKAGE_NAME})
install(FILES README.md SECURITY.md DESTINATION ${guides})
install(FILES sandbox/README.md DESTINATION ${guides}/sandbox)
install(DIRECTORY docs DESTINATION ${guides} PATTERN Doxyfile EXCLUDE)
foreach(host smallest widgets quick backend)
    install(DIRECTORY examples/${host} DESTINATION ${guides}/examples)
endforeach()
if(TARGET parloquin-sandbox)
    debian_package(sandbox parloquin-sandbox devel "python3, python3-dbusmock"
"local service to develop phone-number verification against
Plays the verification service on this machine, judges every request, and
brings a stand-in for the messaging apps.")
endif()
if(TARGET ParloquinQml)
    debian_package(qml qml6-module-parloquin libs
        "${library}${own}, qml6-module-qtqml-workerscript, qml6-module-qtquick, qml6-module-qtquick-window"
"phone-number verification for Qt Quick apps
The QML module Parloquin: the kit in a window of its own.")
endif()
include(CPack)
