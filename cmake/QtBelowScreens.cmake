# QtBelowScreens: Qt for what lies below the screens. Whoever links it finds the headers of these
# modules and of no other: Qt's own targets give the folder that holds all modules, so that a QLabel
# compiles wherever QtCore does.
set(modules Core Gui)

set(walled ${CMAKE_BINARY_DIR}/QtBelowScreens)
add_library(QtBelowScreens INTERFACE)
target_include_directories(QtBelowScreens SYSTEM INTERFACE ${walled})
target_compile_definitions(QtBelowScreens INTERFACE $<$<NOT:$<CONFIG:Debug>>:QT_NO_DEBUG>)
set_target_properties(QtBelowScreens PROPERTIES INTERFACE_QT_MAJOR_VERSION 6) # asked by AUTOMOC
file(REMOVE_RECURSE ${walled}) # a module that left the list
file(MAKE_DIRECTORY ${walled})
foreach(module ${modules})
    # To be linked, not to be compiled with.
    target_link_libraries(QtBelowScreens INTERFACE $<LINK_ONLY:Qt6::${module}>)
    get_target_property(folders Qt6::${module} INTERFACE_INCLUDE_DIRECTORIES)
    list(FILTER folders INCLUDE REGEX "/Qt${module}$")
    list(GET folders 0 folder)
    file(CREATE_LINK ${folder} ${walled}/Qt${module} SYMBOLIC)
endforeach()
