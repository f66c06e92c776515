# One interface target carries what every target of this tree is compiled with.
add_library(ParloquinWarnings INTERFACE)
target_compile_features(ParloquinWarnings INTERFACE cxx_std_20)
target_compile_options(ParloquinWarnings INTERFACE -Wall -Wextra -Wpedantic
    $<$<BOOL:${PARLOQUIN_WARNINGS_ARE_ERRORS}>:-Werror>)
if(NOT CMAKE_UNITY_BUILD)
    target_compile_options(ParloquinWarnings INTERFACE -Wshadow)
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Of files in one unit each local name would shadow what another file calls its own, and all but
    # one look like headers.
    target_compile_options(ParloquinWarnings INTERFACE -Wshadow=local -Wno-subobject-linkage)
endif()
# GCC 12 to 14 see overlapping copies in plain std::string concatenation when they optimise (bug
# 105651 of GCC).
target_compile_options(ParloquinWarnings INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
target_compile_definitions(ParloquinWarnings INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_KEYWORDS
    QT_NO_FOREACH
    QT_NO_URL_CAST_FROM_STRING
    QT_STRICT_ITERATORS
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(PARLOQUIN_SANITIZE)
    # Traces name lines, not variables: -g1 makes these builds quicker.
    target_compile_options(ParloquinWarnings INTERFACE -g1
        -fsanitize=${PARLOQUIN_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(ParloquinWarnings INTERFACE -fsanitize=${PARLOQUIN_SANITIZE})
endif()

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
