# One place for the options every target of ours compiles with.
add_library(corvane_options INTERFACE)
target_compile_features(corvane_options INTERFACE cxx_std_20)
set(CMAKE_CXX_EXTENSIONS OFF)

if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    target_compile_options(corvane_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor)
    if(CORVANE_WARNINGS_AS_ERRORS)
        target_compile_options(corvane_options INTERFACE -Werror)
    endif()
    # GCC 12 reports impossible overlaps in std::string concatenation at -O2 and above.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        target_compile_options(corvane_options INTERFACE -Wno-restrict)
    endif()
    # Hardened as Debian builds its packages: relocations read-only and bound at start, and the
    # C library's checked functions where the optimiser makes them (never beside the sanitizers).
    if(UNIX AND NOT APPLE)
        target_link_options(corvane_options INTERFACE -Wl,-z,relro,-z,now)
    endif()
    if(NOT CORVANE_SANITIZE AND NOT CORVANE_FUZZ)
        target_compile_options(corvane_options INTERFACE "$<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
    endif()
    if(CORVANE_SANITIZE)
        set(_corvane_sanitizers -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_compile_options(corvane_options INTERFACE ${_corvane_sanitizers})
        target_link_options(corvane_options INTERFACE ${_corvane_sanitizers})
        target_compile_definitions(corvane_options INTERFACE CORVANE_SANITIZED)
    endif()
    if(CORVANE_FUZZ)
        # Every library of ours is instrumented for coverage; the targets link libFuzzer itself.
        set(_corvane_fuzzing -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
                             -fno-omit-frame-pointer)
        target_compile_options(corvane_options INTERFACE ${_corvane_fuzzing})
        target_link_options(corvane_options INTERFACE -fsanitize=address,undefined)
    endif()
elseif(MSVC)
    target_compile_options(corvane_options INTERFACE /W4 /permissive- /utf-8)
    if(CORVANE_WARNINGS_AS_ERRORS)
        target_compile_options(corvane_options INTERFACE /WX)
    endif()
endif()

# Qt code: no implicit conversions from 8-bit strings (packets are Latin-1, never locale text).
target_compile_definitions(corvane_options INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
                                                     QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING)
