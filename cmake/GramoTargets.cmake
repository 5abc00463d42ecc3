# What every target of the project shares: warnings, exact arithmetic, sanitizers, Qt's strictness.

option(GRAMO_ASAN "AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
option(GRAMO_TSAN "ThreadSanitizer" OFF)
option(GRAMO_FUZZ "Fuzzers instead of replayers; needs clang" OFF)

# A source that is new to a target has its meta-object code made in the next build: the generator's own
# dependencies hold only the sources that it has seen.
function(gramo_new_sources target)
    get_target_property(sources ${target} SOURCES)
    set(seen_file ${CMAKE_CURRENT_BINARY_DIR}/CMakeFiles/${target}_sources.txt)
    set(seen "")
    if(EXISTS ${seen_file})
        file(READ ${seen_file} seen)
    endif()
    if(NOT seen STREQUAL "${sources}")
        file(WRITE ${seen_file} "${sources}")
        file(REMOVE ${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/timestamp)
    endif()
endfunction()

function(gramo_target target)
    gramo_new_sources(${target})
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
        -Wno-sign-conversion -Wnon-virtual-dtor)
    # The instrumentation of a sanitizer makes GCC see overflows where there are none; there, warnings only warn.
    if(NOT GRAMO_ASAN AND NOT GRAMO_TSAN AND NOT GRAMO_FUZZ)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    # The decoder's results are the same on every machine: no fused multiply-add, no reordering.
    target_compile_options(${target} PRIVATE -ffp-contract=off)
    # Precompiled headers and ccache: it has to see what the header was made of.
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
        target_compile_options(${target} PRIVATE -fpch-preprocess)
    endif()
    # Qt asks for position-independent code, but no function of ours is replaced at load time: within a source
    # they may be inlined.
    target_compile_options(${target} PRIVATE -fno-semantic-interposition)
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_KEYWORDS)
    if(GRAMO_ASAN)
        target_compile_options(${target} PRIVATE -fsanitize=address,undefined -fno-sanitize-recover=undefined
            -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=address,undefined)
    endif()
    if(GRAMO_FUZZ)
        target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link,address,undefined
            -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=address,undefined)
    endif()
    if(GRAMO_TSAN)
        target_compile_options(${target} PRIVATE -fsanitize=thread -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=thread)
    endif()
endfunction()

# The translations travel in the resources under ":/translations/".
function(gramo_translations target)
    file(GLOB ts_files CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/translations/*.ts)
    if(ts_files)
        qt_add_lrelease(${target} TS_FILES ${ts_files} QM_FILES_OUTPUT_VARIABLE qm_files)
        qt_add_resources(${target} gramo_qm PREFIX "/translations" BASE ${CMAKE_BINARY_DIR}
            FILES ${qm_files})
    endif()
endfunction()

# Puts the delivered data folder beside the executable. A file that the user has changed there is kept.
function(gramo_deliver_appdata target)
    add_custom_target(appdata ALL
        COMMAND ${CMAKE_COMMAND} -DFROM=${CMAKE_SOURCE_DIR}/appdata
            -DTO=${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/AppData -DLAST=${CMAKE_BINARY_DIR}/delivered
            -P ${CMAKE_SOURCE_DIR}/cmake/DeliverAppData.cmake
        COMMENT "Delivering AppData" VERBATIM)
    add_dependencies(${target} appdata)
endfunction()
